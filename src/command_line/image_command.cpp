#include "command_line/commands.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "panels/frame.h"
#include "panels/image_explanation.h"
#include "serial_strings/serial_string.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iomanip>
#include <ostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

namespace qdm {
namespace {

std::string HexPairs(ByteView bytes) {
  std::string text;
  for (const std::uint8_t byte : bytes) {
    if (!text.empty()) text += ' ';
    text += HexByte(byte);
  }
  return text;
}

std::string OffsetText(std::size_t offset) {
  std::ostringstream text;
  text << std::uppercase << std::hex << std::setw(4) << std::setfill('0') << offset;
  return text.str();
}

std::string DumpText(const PanelImage& image) {
  constexpr std::size_t kBytesPerLine = 16;
  std::string text;
  for (std::size_t at = 0; at < image.size(); at += kBytesPerLine) {
    text += OffsetText(at) + "  " + HexPairs(ByteView(image).subspan(at, kBytesPerLine)) + "\n";
  }
  return text;
}

std::string RecordsText(const PanelImage& image) {
  std::string text;
  for (int record = 0; record < kRecords; ++record) text += HexPairs(ProgramRecord(image, record)) + "\n";
  return text;
}

std::size_t CharactersIn(std::string_view utf8) {
  return static_cast<std::size_t>(std::count_if(
      utf8.begin(), utf8.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

// Long strings take several lines; the meaning stands in the first.
std::string ExplanationText(const PanelImage& image, const PanelConfiguration& configuration) {
  constexpr std::size_t kBytesPerLine = 8;
  constexpr std::size_t kBytesWidth = 3 * kBytesPerLine - 1;
  constexpr std::size_t kWidestMeaning = 72;  // a longer one pushes its own line's fields out
  const std::vector<ImagePart> parts = ExplainImage(configuration);
  std::size_t meaningWidth = 0;
  for (const ImagePart& part : parts) {
    if (!part.Fields.empty()) meaningWidth = std::max(meaningWidth, CharactersIn(part.Meaning));
  }
  meaningWidth = std::min(meaningWidth, kWidestMeaning);

  std::string text;
  const auto addLine = [&](std::size_t offset, std::string bytes, const std::string& meaning,
                           const std::string& fields) {
    bytes.resize(kBytesWidth, ' ');
    text += OffsetText(offset) + "  " + bytes + "  " + meaning;
    const std::size_t gap = meaningWidth - std::min(meaningWidth, CharactersIn(meaning)) + 2;
    if (!fields.empty()) text.append(gap, ' ').append(fields);
    text.erase(text.find_last_not_of(' ') + 1);
    text += '\n';
  };
  for (const ImagePart& part : parts) {
    const ByteView bytes = ByteView(image).subspan(part.Offset, part.Length);
    const std::string meaning = OneLine(part.Meaning);
    if (part.Fields.empty() && part.Length > kBytesPerLine) {
      addLine(part.Offset, "FF x " + std::to_string(part.Length), meaning, part.Fields);
      continue;
    }
    for (std::size_t at = 0; at < bytes.size(); at += kBytesPerLine) {
      const ByteView shown = bytes.subspan(at, std::min(kBytesPerLine, bytes.size() - at));
      addLine(part.Offset + at, HexPairs(shown), at == 0 ? meaning : "", at == 0 ? part.Fields : "");
    }
  }
  return text;
}

}  // namespace

int Image(const ImageOptions& options, CommandContext& context) {
  if (options.Output == kStandardStream) {
    throw CommandError(kUnusable, options.Output, "an image is no text; without -o it is shown as a dump");
  }
  const PanelConfiguration configuration = ReadConfigurationFile(options.File);
  const PanelImage image = ImageOf(options.File, configuration);
  switch (options.Form) {
    case ImageForm::Records:
      context.Out << RecordsText(image);
      break;
    case ImageForm::Explanation:
      context.Out << ExplanationText(image, configuration);
      break;
    case ImageForm::Dump:
      if (options.Output.empty()) {
        context.Out << DumpText(image);
      } else {
        WriteBinaryFile(options.Output, image);
      }
      break;
  }
  return kDone;
}

PanelImage ImageOf(const std::string& file, const PanelConfiguration& configuration) {
  try {
    return BuildPanelImage(configuration);
  } catch (const ImageError& error) {
    throw CommandError(kRefused, file, error.what());
  }
}

}  // namespace qdm
