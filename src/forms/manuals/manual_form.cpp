#include "forms/manuals/manual_form.h"

#include "base/words.h"
#include "forms/controls/screen_fit.h"
#include "forms/manuals/manual_rows.h"
#include "forms/manuals/page_reader.h"
#include "forms/shared/qt_text.h"
#include "forms/shared/user_prompts.h"
#include "ui_manual_form.h"

#include <QCheckBox>
#include <QClipboard>
#include <QDragEnterEvent>
#include <QFileInfo>
#include <QMenu>
#include <QMimeData>
#include <QPushButton>
#include <QShortcut>
#include <QTimer>

#include <cstddef>

namespace qdm {
namespace {

constexpr const char* kManualFileFilter = Marked("Manual (*.PDF *.TXT)|*.PDF *.TXT");
// Shorter than the pause between two words, longer than the one between two letters.
constexpr int kRestMilliseconds = 300;

}  // namespace

ManualForm::ManualForm(UserPrompts& prompts, QWidget* parent)
    : QDialog(parent),
      ui_(std::make_unique<Ui::ManualForm>()),
      prompts_(prompts),
      reader_(new PageReader(this)),
      ReadTimer(new QTimer(this)),
      SlotMenu(new QMenu(tr("&This is the command for"), this)) {
  ui_->setupUi(this);
  setAcceptDrops(true);
  ui_->Columns->setStretchFactor(0, 1);
  ui_->Columns->setStretchFactor(1, 1);
  ReadTimer->setSingleShot(true);
  ReadTimer->setInterval(kRestMilliseconds);
  MakeSlotMenu();
  ConnectControls();
  ShowDraft();
  Say({});
  FitToScreen(this);
  ui_->PageText->setFocus();
}

ManualForm::~ManualForm() = default;

void ManualForm::ConnectControls() {
  connect(ui_->PageText, &QPlainTextEdit::textChanged, this, &ManualForm::PageText_TextChanged);
  connect(ui_->PageText, &QPlainTextEdit::selectionChanged, this,
          [this] { SlotMenu->setEnabled(ui_->PageText->textCursor().hasSelection()); });
  connect(SlotMenu->menuAction(), &QAction::changed, ui_->MarkCommand,
          [this] { ui_->MarkCommand->setEnabled(SlotMenu->isEnabled()); });
  connect(ui_->PageText, &ManualText::PieceEntered, this, &ManualForm::PageText_PieceEntered);
  connect(ui_->PageText, &ManualText::FilesGiven, this,
          [this](const QStringList& files) { ReadFiles(files); });
  connect(ReadTimer, &QTimer::timeout, this, &ManualForm::ReadNow);
  connect(ui_->AddPage, &QPushButton::clicked, this, &ManualForm::AddPage_Click);
  connect(ui_->OpenFile, &QPushButton::clicked, this, &ManualForm::OpenFile_Click);
  connect(reader_, &PageReader::Ready, this, [this](const QString& text) {
    AddPage(text);
    FileIsRead();
  });
  connect(reader_, &PageReader::Failed, this, [this](const Message& message) {
    Say({});
    prompts_.Show(this, message);
    FileIsRead();
  });
  connect(ui_->Rows, &ManualRows::Ticked, this, [this](std::size_t slot, bool ticked) {
    draft_.Tick(slot, ticked);
    ShowDone();
  });
  connect(ui_->Rows, &ManualRows::Chosen, this, [this](std::size_t slot, std::size_t candidate) {
    draft_.Choose(slot, candidate);
    ShowDraft();
    PointOut(slot, true);
  });
  connect(ui_->Rows, &ManualRows::Entered, this, [this](std::size_t slot) { PointOut(slot, true); });
  for (QCheckBox* box : {ui_->TakeSpeed, ui_->TakeParity, ui_->TakeStopBits})
    connect(box, &QCheckBox::toggled, this, &ManualForm::ShowDone);
  connect(ui_->Done, &QPushButton::clicked, this, &QDialog::accept);
  connect(ui_->CancelCommand, &QPushButton::clicked, this, &QDialog::reject);
  connect(new QShortcut(QKeySequence::Open, this), &QShortcut::activated, ui_->OpenFile, &QPushButton::click);
}

void ManualForm::MakeSlotMenu() {
  AddSlots(SlotMenu, false);
  SlotMenu->addSeparator();
  AddSlots(SlotMenu->addMenu(tr("This is what the projector sends")), true);
  SlotMenu->setEnabled(false);
  ui_->MarkCommand->setMenu(SlotMenu);
  ui_->MarkCommand->setEnabled(false);
  ui_->PageText->SetMenu(SlotMenu);
}

void ManualForm::AddSlots(QMenu* menu, bool received) {
  for (std::size_t slot = 0; slot < kCommandSlots; ++slot) {
    if (SlotHasIgnoreMask(slot) != received) continue;
    QAction* action = menu->addAction(NameOf(slot));
    action->setObjectName(QStringLiteral("MarkAs_%1").arg(slot));
    connect(action, &QAction::triggered, this, [this, slot] { MarkAs(slot); });
  }
}

void ManualForm::SetTimeLimit(std::chrono::milliseconds limit) { reader_->SetTimeLimit(limit); }

void ManualForm::PageText_TextChanged() { ReadTimer->start(); }

void ManualForm::ReadNow() {
  ReadTimer->stop();
  draft_.Read(ui_->PageText->Text());
  ShowDraft();
}

void ManualForm::ShowDraft() {
  ui_->PageText->ShowPieces(draft_.Pieces());
  ui_->Rows->ShowRows(draft_.Rows());
  QStringList missing;
  for (const std::size_t slot : draft_.NotFound()) missing << NameOf(slot);
  const bool found = !draft_.Rows().empty();
  const bool text = !ui_->PageText->document()->isEmpty();
  ui_->NotFound->setVisible(!missing.isEmpty());
  ui_->NotFound->setText(
      !text   ? tr("What is understood of the text appears here.")
      : found ? tr("Not found: %1").arg(missing.join(QStringLiteral(", ")))
              : tr("No command was found. Select one in the text and press \"This is the command for\", or "
                   "add the page that lists the commands."));
  ShowLine();
  ShowDone();
}

void ManualForm::ShowLine() {
  const ManualLineSettings& line = draft_.Reading().Line;
  const bool hasSpeed = !line.Speed || DefinitionHasSpeed(*line.Speed);
  ShowLineBox(ui_->TakeSpeed,
              !line.Speed
                  ? tr("Speed: not said")
                  : (hasSpeed ? tr("Speed %1") : tr("Speed %1: not one of the panel's")).arg(*line.Speed),
              line.Speed && hasSpeed);
  const auto parity = [&] {
    if (!line.Parity) return tr("Parity: not said");
    if (*line.Parity == LineParity::None) return tr("Parity none");
    return *line.Parity == LineParity::Even ? tr("Parity even") : tr("Parity odd");
  };
  ShowLineBox(ui_->TakeParity, parity(), line.Parity.has_value());
  ShowLineBox(ui_->TakeStopBits,
              line.StopBits ? tr("Stop bits %1").arg(*line.StopBits) : tr("Stop bits: not said"),
              line.StopBits.has_value());
}

// A box stays as the user left it as long as it means the same.
void ManualForm::ShowLineBox(QCheckBox* box, const QString& caption, bool usable) {
  if (box->text() == caption) return;
  box->setText(caption);
  box->setEnabled(usable);
  box->setChecked(usable);
}

ManualChoices ManualForm::Choices() const {
  ManualChoices choices = draft_.Choices();
  if (!ui_->TakeSpeed->isChecked()) choices.Line.Speed.reset();
  if (!ui_->TakeParity->isChecked()) choices.Line.Parity.reset();
  if (!ui_->TakeStopBits->isChecked()) choices.Line.StopBits.reset();
  return choices;
}

void ManualForm::ShowDone() {
  const bool nothing = Choices().Empty();
  ui_->Done->setEnabled(!nothing);
  ui_->Done->setToolTip(nothing ? tr("Nothing is ticked yet") : QString());
}

void ManualForm::PageText_PieceEntered(int index) {
  if (index < 0) return;
  const ManualPiece& piece = draft_.Pieces().at(static_cast<std::size_t>(index));
  PointOut(piece.Slot, false);
  const QString meaning = QString::fromStdString(piece.Meaning);
  Say(piece.Slot ? tr("%1: %2").arg(NameOf(*piece.Slot), meaning) : meaning);
}

void ManualForm::PointOut(std::optional<std::size_t> slot, bool scrollText) {
  ui_->PageText->PointOut(slot, scrollText);
  if (QWidget* row = ui_->Rows->PointOut(slot)) ui_->RowsArea->ensureWidgetVisible(row);
}

void ManualForm::MarkAs(std::size_t slot) {
  const std::optional<TextPart> selected = ui_->PageText->Selected();
  if (!selected) return;
  ReadNow();
  if (const auto problem = draft_.Mark(slot, selected->From, selected->Length)) {
    prompts_.Show(this, {*problem, qdm::Say("Sorry"), MessageIcon::Exclamation});
    return;
  }
  ShowDraft();
  PointOut(slot, false);
}

void ManualForm::AddPage_Click() {
  const QString page = QGuiApplication::clipboard()->text();
  if (page.trimmed().isEmpty()) {
    Say(tr("Copy the next page in the PDF viewer (select it, Ctrl+C), then press this button again."));
    return;
  }
  AddPage(page);
}

void ManualForm::OpenFile_Click() {
  if (const std::optional<QString> file =
          prompts_.OpenFile(this, tr("Add a Page of a Manual"), kManualFileFilter))
    ReadFiles({*file});
}

void ManualForm::ReadFiles(const QStringList& files) {
  const bool reading = !files_.isEmpty();
  files_ += files;
  if (!reading) ReadFirstFile();
}

void ManualForm::ReadFirstFile() {
  Say(tr("Reading %1...").arg(QFileInfo(files_.first()).fileName()));
  reader_->Read(files_.first());
}

void ManualForm::FileIsRead() {
  files_.removeFirst();
  if (!files_.isEmpty()) ReadFirstFile();
}

void ManualForm::AddPage(const QString& text) {
  Say({});
  ui_->PageText->AddPage(text);
  ReadNow();
  ui_->PageText->setFocus();
}

void ManualForm::Say(const QString& text) {
  ui_->Status->setText(text.isEmpty() ? tr("Click a coloured piece to see what it is taken for.") : text);
}

void ManualForm::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls() || event->mimeData()->hasText()) event->acceptProposedAction();
}

void ManualForm::dropEvent(QDropEvent* event) {
  const QStringList files = FilesIn(event->mimeData());
  if (!files.isEmpty()) {
    ReadFiles(files);
  } else if (event->mimeData()->hasText()) {
    AddPage(event->mimeData()->text());
  }
  event->acceptProposedAction();
}

std::optional<ProjectorDefinition> ManualForm::Fill(const ProjectorDefinition& projector,
                                                    UserPrompts& prompts, QWidget* parent) {
  ManualForm form(prompts, parent);
  if (form.exec() != QDialog::Accepted) return std::nullopt;
  return WithManual(projector, form.Choices());
}

}  // namespace qdm
