#include "work_log/commissioning_sheet.h"

#include "config/configuration_sentences.h"
#include "config/configuration_words.h"
#include "line/speeds_and_parities.h"
#include "panels/panel_image.h"
#include "serial_strings/serial_string.h"
#include "work_log/room_status.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

namespace qdm {
namespace {

constexpr std::size_t kDownloadsShown = 4;
constexpr const char* kBlank = "______________________";

std::string Escaped(std::string_view text) {
  std::string escaped;
  for (const char c : text) {
    switch (c) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += c;
    }
  }
  return escaped;
}

std::string Heading(std::string_view text) { return "<h3>" + Escaped(text) + "</h3>\n"; }

std::string Cells(const std::vector<std::string>& cells, const std::string& tag = "td") {
  std::string row = "<tr>";
  for (const std::string& cell : cells) {
    row.append("<").append(tag).append(" align=\"left\">").append(cell).append("</").append(tag).append(">");
  }
  return row += "</tr>\n";
}

std::string Table(const std::string& rows, const std::string& attributes = "") {
  return "<table width=\"100%\" cellspacing=\"0\" cellpadding=\"2\" " + attributes + ">\n" + rows +
         "</table>\n";
}

std::string Fact(std::string_view name, const std::string& value) {
  return "<tr><td width=\"22%\"><b>" + Escaped(name) + "</b></td><td>" + value + "</td></tr>\n";
}

std::string PanelText(const SheetFacts& facts) {
  const PanelType* type = PanelTypeOf(facts.Configuration.ControllerType);
  const std::string caption = type == nullptr ? "unknown type" : std::string(type->Caption);
  if (facts.Downloads.empty()) return Escaped(caption) + ", firmware " + kBlank;
  const Identification& panel = facts.Downloads.front().Panel;
  return Escaped(caption) + ", firmware " + std::to_string(panel.Major) + "." + std::to_string(panel.Minor);
}

std::string LineText(const ProjectorDefinition& projector) {
  const ParityChoice* parity = ParityWithCode(projector.Parity);
  return std::string(SpeedOf(projector.Baudrate).Digits) + " bits a second, parity " +
         (parity == nullptr ? "unknown" : std::string(parity->SearchText)) + ", 8 data bits, " +
         (projector.Stopbits != 0 ? "2 stop bits" : "1 stop bit");
}

std::string ImageText(const PanelConfiguration& configuration) {
  try {
    return HexDigits(Sha256(BuildPanelImage(configuration)));
  } catch (const ImageError& error) {
    return Escaped(error.what());
  }
}

std::string Facts(const SheetFacts& facts) {
  const ProjectorDefinition& projector = facts.Configuration.Projector;
  return Table(
      Fact("Room", Escaped(facts.Room)) + Fact("Panel", PanelText(facts)) +
      Fact("Projector", Escaped(projector.Manufacturer.TrimmedUtf8() + " " + projector.Model.TrimmedUtf8())) +
      Fact("Projector's line", LineText(projector)) + Fact("Wiring side", kBlank) +
      Fact("Image, SHA-256", "<small>" + ImageText(facts.Configuration) + "</small>"));
}

std::string Words(const PanelConfiguration& configuration) {
  const ConfigurationWords words = InWords(configuration);
  std::string text = Heading("What it does") + "<p>";
  for (const std::string& sentence : words.Sentences) text += Escaped(sentence) + "<br/>\n";
  for (const std::string& remark : words.Remarks) text += "<b>Note:</b> " + Escaped(remark) + "<br/>\n";
  return text + "</p>\n";
}

std::string LockCode(const SheetFacts& facts) {
  if (facts.Configuration.LockUsingButtons == 0) return {};
  std::string cells;
  for (const std::int16_t place : facts.Configuration.LockSequence) {
    const auto index = static_cast<std::size_t>(place);
    cells += "<td align=\"center\" width=\"25%\">";
    if (index < facts.Pictures.size() && !facts.Pictures[index].empty()) {
      cells += "<img src=\"" + facts.Pictures[index] + "\" width=\"32\" height=\"32\"/><br/>";
    }
    cells += Escaped(LockButtonName(place)) + "</td>";
  }
  return Heading("Lock code") + "<table width=\"60%\" cellpadding=\"2\"><tr>" + cells + "</tr></table>\n";
}

std::string HexText(const SerialString& string) {
  std::string text;
  for (std::size_t i = 0; i < string.BytesInUse(); ++i)
    text += (i > 0 ? " " : "") + HexByte(string.Values[i]);
  return text;
}

std::string Strings(const ProjectorDefinition& projector) {
  std::string rows = Cells({"String", "Text", "Hexadecimal"}, "th");
  for (const SlotFacts& slot : kSlots) {
    const SerialString& string = projector.Strings[slot.Place];
    if (projector.Available[slot.Place] == 0 || string.BytesInUse() == 0) continue;
    rows += Cells({Escaped(slot.Name), Escaped(CompactText(string)), HexText(string)});
  }
  return Heading("Commands and replies") + "<small>" +
         Table(rows, "border=\"1\" style=\"border-collapse:collapse\"") + "</small>";
}

std::string StateSentence(const SheetFacts& facts) {
  if (facts.Downloads.empty()) return "The work log has none of this room.";
  const RoomHistories histories(facts.Downloads);
  switch (StatusOf(facts.Configuration, facts.Downloads.front().File, histories).State) {
    case RoomState::Current:
      return "What this sheet describes is what was sent last.";
    case RoomState::Changed:
      return "What this sheet describes has changed since it was sent.";
    default:
      return "The last download was not finished.";
  }
}

std::string Downloads(const SheetFacts& facts) {
  std::string heading = Heading("Downloads") + "<p>" + StateSentence(facts) + "</p>\n";
  if (facts.Downloads.empty()) return heading;
  std::string rows = Cells({"Time", "Panel", "Port", "Records", "Outcome", "Image"}, "th");
  const std::size_t shown = std::min(kDownloadsShown, facts.Downloads.size());
  for (std::size_t i = 0; i < shown; ++i) {
    const WorkLogEntry& entry = facts.Downloads[i];
    rows += Cells({Escaped(facts.TimeText(entry.Began)), Escaped(IdentificationText(entry.Panel)),
                   Escaped(entry.Port + " " + entry.Settings),
                   std::to_string(entry.Records) + ", " + std::to_string(entry.Retries) + " retries",
                   Escaped(OutcomeText(entry.Outcome)), HexDigits(entry.Image).substr(0, 12)});
  }
  return heading + "<small>" + Table(rows, "border=\"1\" style=\"border-collapse:collapse\"") + "</small>";
}

std::string Signatures(const SheetFacts& facts) {
  const std::string line = "<br/>" + std::string(kBlank) + "<br/><small>Date, signature</small>";
  const std::string by = facts.By.empty() ? kBlank : Escaped(facts.By);
  return Heading("Handed over") +
         Table(Cells({"Commissioned by: " + by, "Accepted by: " + std::string(kBlank)}) +
               Cells({line, line}));
}

}  // namespace

std::string CommissioningSheetHtml(const SheetFacts& facts) {
  const std::string title = "Commissioning sheet: " + facts.Room;
  return "<!DOCTYPE html>\n<html><head><meta charset=\"utf-8\"/><title>" + Escaped(title) +
         "</title></head>\n<body style=\"font-family:'DejaVu Sans',Arial,sans-serif; font-size:9pt\">\n<h2>" +
         Escaped(title) + "</h2>\n<p>" + Escaped(facts.Date) + "</p>\n" + Facts(facts) +
         Words(facts.Configuration) + LockCode(facts) + Strings(facts.Configuration.Projector) +
         Downloads(facts) + Signatures(facts) + "</body></html>\n";
}

}  // namespace qdm
