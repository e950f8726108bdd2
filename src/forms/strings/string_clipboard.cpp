#include "forms/strings/string_clipboard.h"

#include "base/words.h"
#include "forms/shared/globals.h"
#include "forms/shared/user_prompts.h"
#include "forms/strings/text_reading_form.h"
#include "projectors/paste_rule.h"
#include "serial_strings/serial_string.h"
#include "serial_strings/text_parser.h"

#include <QClipboard>
#include <QGuiApplication>

#include <cstddef>

namespace qdm {
namespace {

std::optional<SerialString> ReadText(QWidget* parent, UserPrompts& prompts, const QString& text) {
  const ParsedText parsed = ParseSerialText(text.toStdU16String());
  if (parsed.Readings.empty()) {
    prompts.Show(parent, {Say("Sorry cannot read the text on the clipboard as a serial string!\r\n%1",
                              {ProblemText(parsed.Problem.value_or(TextProblem{}))}),
                          Say("Sorry!"), MessageIcon::Exclamation});
    return std::nullopt;
  }
  if (!parsed.NeedsChoice()) return parsed.Readings.front().String;
  return TextReadingForm::Choose(parent, text, parsed);
}

}  // namespace

void CopyString(Globals& globals, const SerialString& string) {
  globals.ClipboardString = string;
  QGuiApplication::clipboard()->setText(QString::fromStdString(CompactText(string)));
}

std::optional<SerialString> StringToPaste(QWidget* parent, Globals& globals, UserPrompts& prompts,
                                          std::size_t slot) {
  const QString text = QGuiApplication::clipboard()->text();
  std::optional<SerialString> string = globals.ClipboardString;
  if (!text.isEmpty() && text != QString::fromStdString(CompactText(*string))) {
    string = ReadText(parent, prompts, text);
  }
  if (!string) return std::nullopt;
  if (const auto refusal = CheckPaste(slot, *string)) {
    prompts.Show(parent, *refusal);
    return std::nullopt;
  }
  return string;
}

}  // namespace qdm
