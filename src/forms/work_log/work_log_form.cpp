#include "forms/work_log/work_log_form.h"

#include "base/file_access.h"
#include "base/words.h"
#include "config/configuration_file.h"
#include "config/configuration_words.h"
#include "forms/controls/screen_fit.h"
#include "forms/shared/busy_work.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "forms/work_log/read_entries.h"
#include "forms/work_log/work_log_model.h"
#include "ui_work_log_form.h"

#include <QFileInfo>
#include <QHeaderView>
#include <QShortcut>
#include <QTimer>

#include <algorithm>
#include <array>
#include <cstddef>
#include <limits>
#include <utility>
#include <vector>

namespace qdm {
namespace {

constexpr QSize kLogSize(1000, 620);
constexpr int kFirstEntries = 500;
constexpr int kRestAfter = 100;  // ms: by then the window has been painted
constexpr std::size_t kAllEntries = std::numeric_limits<std::size_t>::max();
constexpr const char* kCsvFilter = Marked("Comma-separated values (*.CSV)|*.CSV");
constexpr std::array<int, WorkLogModel::kColumns> kLogWidths = {22, 28, 13, 9, 15, 11, 10, 15, 14};

Message Sorry(const QString& text) { return {text.toStdString(), Say("Sorry"), MessageIcon::Exclamation}; }

QString Lines(const std::vector<DifferenceText>& differences) {
  QString text;
  for (const DifferenceText& difference : differences) {
    text += QString::fromStdString(LineOf(difference)) + QLatin1Char('\n');
  }
  return text;
}

}  // namespace

WorkLogForm::WorkLogForm(WorkLog& log, UserPrompts& prompts, ConfigurationCommands commands, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::WorkLogForm>()),
      log_(log),
      prompts_(prompts),
      commands_(std::move(commands)),
      model_(new WorkLogModel(this)) {
  ui_->setupUi(this);
  ui_->Entries->setModel(model_);
  ui_->Entries->sortByColumn(WorkLogModel::Time, Qt::DescendingOrder);
  const int character = fontMetrics().averageCharWidth();
  for (std::size_t column = 0; column < kLogWidths.size(); ++column) {
    const int number = static_cast<int>(column);
    const int caption = ui_->Entries->horizontalHeader()->sectionSizeHint(number);
    ui_->Entries->setColumnWidth(number, std::max(caption, kLogWidths[column] * character));
  }
  ui_->Entries->verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
  ui_->Splitter->setStretchFactor(0, 3);
  ui_->Splitter->setStretchFactor(1, 2);
  resize(kLogSize);
  FitToScreen(this);
  connect(ui_->Filter, &QLineEdit::textChanged, this, &WorkLogForm::Filter_Change);
  connect(ui_->Entries->selectionModel(), &QItemSelectionModel::selectionChanged, this,
          &WorkLogForm::Entries_Select);
  connect(model_, &QAbstractItemModel::modelReset, this, &WorkLogForm::Entries_Select);
  connect(ui_->Entries, &QTableView::doubleClicked, this, &WorkLogForm::OpenAsConfiguration_Click);
  for (const int key : {Qt::Key_Return, Qt::Key_Enter}) {
    new QShortcut(
        key, ui_->Entries, this, [this] { OpenAsConfiguration_Click(); }, Qt::WidgetShortcut);
  }
  connect(ui_->OpenAsConfiguration, &QPushButton::clicked, this, &WorkLogForm::OpenAsConfiguration_Click);
  connect(ui_->Compare, &QPushButton::clicked, this, &WorkLogForm::Compare_Click);
  connect(ui_->SendAgain, &QPushButton::clicked, this, &WorkLogForm::SendAgain_Click);
  connect(ui_->Export, &QPushButton::clicked, this, &WorkLogForm::Export_Click);
  connect(ui_->Done, &QPushButton::clicked, this, &WorkLogForm::reject);
  Form_Load();
}

WorkLogForm::~WorkLogForm() = default;

void WorkLogForm::Form_Load() {
  Read(kFirstEntries);
  whole_ = model_->rowCount() < kFirstEntries;
  if (!whole_) QTimer::singleShot(kRestAfter, this, &WorkLogForm::LoadRest);
  if (model_->rowCount() > 0) ui_->Entries->selectRow(0);
  ui_->Filter->setFocus();
  ShowCount();
}

void WorkLogForm::LoadRest() {
  if (BusyWork::Underway()) return QTimer::singleShot(kRestAfter, this, &WorkLogForm::LoadRest);
  if (std::exchange(whole_, true)) return;
  const int row = ui_->Entries->currentIndex().row();
  Read(kAllEntries);
  ui_->Entries->selectRow(row);
  ShowCount();
}

void WorkLogForm::Read(std::size_t atMost) {
  try {
    model_->SetEntries(ReadEntries(log_, this, atMost));
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
  }
  if (const auto message = log_.TakeMessage()) prompts_.Show(this, *message);
}

void WorkLogForm::Filter_Change(const QString& text) {
  LoadRest();
  model_->SetFilter(text);
  if (model_->rowCount() > 0) ui_->Entries->selectRow(0);
  ShowCount();
}

void WorkLogForm::ShowCount() {
  ui_->Count->setText(whole_ ? tr("Downloads: %1").arg(model_->rowCount()) : QString());
}

const WorkLogEntry* WorkLogForm::Selected() const {
  const QModelIndexList rows = ui_->Entries->selectionModel()->selectedRows();
  return rows.isEmpty() ? nullptr : &model_->EntryAt(rows.first().row());
}

void WorkLogForm::Entries_Select() {
  const WorkLogEntry* entry = Selected();
  for (QPushButton* button : {ui_->OpenAsConfiguration, ui_->Compare, ui_->SendAgain}) {
    button->setEnabled(entry != nullptr);
  }
  ui_->Compare->setEnabled(entry != nullptr && !entry->File.empty());
  ui_->Compare->setToolTip(entry != nullptr && entry->File.empty() ? tr("The configuration was never saved")
                                                                   : QString());
  if (entry == nullptr) {
    ui_->Details->setPlainText(model_->rowCount() > 0          ? QString()
                               : ui_->Filter->text().isEmpty() ? tr("Nothing has been sent to a panel yet.")
                                                               : tr("There is no such download."));
    return;
  }
  const QString device = entry->Device == entry->Port ? QString() : QString::fromStdString(entry->Device);
  ui_->Details->setPlainText(
      tr("File: %1\nPanel: %2 on %3 at %4\nRecords: %5 of 64, retries: %6, %7 s\nOutcome: %8\nImage, "
         "SHA-256: %9")
          .arg(entry->File.empty() ? tr("not saved") : QString::fromStdString(entry->File),
               QString::fromStdString(IdentificationText(entry->Panel)),
               device.isEmpty() ? QString::fromStdString(entry->Port)
                                : tr("%1 (%2)").arg(QString::fromStdString(entry->Port), device),
               QString::fromStdString(entry->Settings), QString::number(entry->Records),
               QString::number(entry->Retries),
               QString::number(static_cast<double>(entry->Duration.count()) / 1000, 'f', 1),
               Said(OutcomeText(entry->Outcome)), QString::fromStdString(HexDigits(entry->Image))));
}

std::optional<PanelConfiguration> WorkLogForm::SelectedConfiguration() {
  const WorkLogEntry* entry = Selected();
  if (entry == nullptr) return std::nullopt;
  try {
    const std::optional<Bytes> stored =
        DoBusy(this, tr("Still reading the work log."), [&] { return log_.ConfigurationOf(entry->Number); });
    if (stored && stored->size() == kStoredConfigurationSize) {
      PanelConfiguration configuration;
      Decode(*stored, configuration);
      return configuration;
    }
    prompts_.Show(this, Sorry(tr("The work log no longer has this configuration.")));
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
  }
  return std::nullopt;
}

void WorkLogForm::OpenAsConfiguration_Click() {
  const std::optional<PanelConfiguration> configuration = SelectedConfiguration();
  if (configuration && commands_.Open(this, *configuration)) accept();
}

void WorkLogForm::Compare_Click() {
  const std::optional<PanelConfiguration> then = SelectedConfiguration();
  if (!then) return;
  try {
    const QString file = QString::fromStdString(Selected()->File);
    const PanelConfiguration now = DoBusy(this, tr("Still reading %1.").arg(QFileInfo(file).fileName()),
                                          [&] { return ReadConfiguration(ToPath(file)); });
    const std::vector<DifferenceText> changes = DifferencesInWords(*then, now);
    ui_->Details->setPlainText(changes.empty() ? tr("%1 is as it was sent.").arg(file)
                                               : tr("What has changed in %1:").arg(file) + QLatin1Char('\n') +
                                                     Lines(changes));
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
  }
}

void WorkLogForm::SendAgain_Click() {
  const std::optional<PanelConfiguration> configuration = SelectedConfiguration();
  if (!configuration) return;
  commands_.Send(this, *configuration, QString::fromStdString(Selected()->File));
  Form_Load();
}

void WorkLogForm::Export_Click() {
  LoadRest();
  const std::optional<QString> file = prompts_.SaveFile(this, tr("Export the Work Log"), kCsvFilter);
  if (!file) return;
  try {
    const QByteArray text = model_->AsCsv().toUtf8();
    DoBusy(this, tr("Still writing %1.").arg(QFileInfo(*file).fileName()),
           [&] { WriteFileSafely(ToPath(*file), Bytes(text.begin(), text.end())); });
  } catch (const FileError& error) {
    prompts_.Show(this, SorryAbout(error));
  }
}

}  // namespace qdm
