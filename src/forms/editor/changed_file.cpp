#include "forms/editor/changed_file.h"

#include "config/configuration_file.h"
#include "config/configuration_words.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>

#include <array>
#include <cstddef>

namespace qdm {
namespace {

// Of differences in a box, which has to fit the smallest screen.
constexpr std::size_t kMostLines = 10;
constexpr int kMostLetters = 110;  // of one

struct Texts {
  Q_DECLARE_TR_FUNCTIONS(qdm::ChangedFile)
};

QString InWords(const PanelConfiguration& mine, const PanelConfiguration& theirs) {
  const auto differences = DifferencesInWords(mine, theirs);
  if (differences.empty()) return Texts::tr("No option differs from what is shown here.");
  QStringList lines;
  for (const DifferenceText& difference : differences) {
    if (lines.size() == kMostLines) {
      lines << Texts::tr("and %n more", nullptr, static_cast<int>(differences.size() - kMostLines));
      break;
    }
    QString line =
        Texts::tr("%1: mine %2, theirs %3")
            .arg(QString::fromStdString(difference.Field), QString::fromStdString(difference.First),
                 QString::fromStdString(difference.Second));
    if (line.size() > kMostLetters) line = line.left(kMostLetters - 1) + QChar(0x2026);
    lines << line;
  }
  return lines.join(QLatin1String("\r\n"));
}

Message Question(const QString& text, const QString& detail = {}) {
  return {text.toStdString(), Texts::tr("File Changed").toStdString(), MessageIcon::Exclamation,
          detail.toStdString()};
}

}  // namespace

SavingOver AskBeforeSavingOver(UserPrompts& prompts, QWidget* parent, const QString& fileName,
                               const PanelConfiguration& asItWas, const PanelConfiguration& mine) {
  using State = ConfigurationOnDisk::State;
  const QFileInfo file(fileName);
  const ConfigurationOnDisk onDisk = DoBusy(parent, Texts::tr("Still reading %1.").arg(file.fileName()),
                                            [&] { return LookAgain(ToPath(fileName), asItWas); });
  const QString folder = QDir::toNativeSeparators(file.absolutePath());
  if (onDisk.Is == State::AsItWas) return SavingOver::Mine;
  if (onDisk.Is == State::Changed) {
    constexpr std::array kAnswers = {SavingOver::Mine, SavingOver::OpenTheirs, SavingOver::SaveAs,
                                     SavingOver::Cancel};
    const QString text = Texts::tr("%1 has been saved by somebody else since it was opened here.");
    const int answer = prompts.Choose(
        parent, Question(text.arg(file.fileName()), InWords(mine, onDisk.Theirs)),
        {Texts::tr("Save &mine"), Texts::tr("&Open theirs"), Texts::tr("Save &as"), Texts::tr("Cancel")}, 3);
    return kAnswers[static_cast<std::size_t>(answer)];
  }
  constexpr std::array kAnswers = {SavingOver::Mine, SavingOver::SaveAs, SavingOver::Cancel};
  const QString text =
      onDisk.Is == State::Gone
          ? Texts::tr("%1 is no longer in %2: it has been moved, renamed or deleted.")
          : Texts::tr("%1 in %2 can no longer be read as a configuration: something else has replaced it.");
  const int answer =
      prompts.Choose(parent, Question(text.arg(file.fileName(), folder)),
                     {Texts::tr("Save &here again"), Texts::tr("Save &as"), Texts::tr("Cancel")}, 2);
  return kAnswers[static_cast<std::size_t>(answer)];
}

}  // namespace qdm
