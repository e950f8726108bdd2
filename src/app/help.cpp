#include "app/help.h"

#include "base/file_access.h"
#include "base/words.h"

#ifdef _WIN32
#include <windows.h>
#else
#include "app/help_window.h"
#endif

#include <QApplication>
#include <QDialog>
#include <QKeyEvent>
#include <QWidget>

#include <array>
#include <memory>
#include <string>
#include <utility>

namespace qdm {
namespace {

struct FormPage {
  const char* Form;
  const char* Page;
};
constexpr std::array<FormPage, 17> kFormPages = {{
    {"qdm::ProjectorPanelEditor", "main-window.html"},
    {"qdm::ProjectorSelector", "projector-selector.html"},
    {"qdm::NewNameForm", "projector-selector.html"},
    {"qdm::ProjectorReplaceForm", "replace.html"},
    {"qdm::ProjectorReplaceForm2", "replace.html"},
    {"qdm::ProjectorSetupForm", "projector-setup.html"},
    {"qdm::ManualForm", "from-a-manual.html"},
    {"qdm::SerialEditor", "string-editor.html"},
    {"qdm::VolumeEditorForm", "volume-format.html"},
    {"qdm::SerialTestForm", "test-console.html"},
    {"qdm::Download", "download.html"},
    {"qdm::FindPanel", "find-panel.html"},
    {"qdm::ProjectorBench", "projector-bench.html"},
    {"qdm::WorkLogForm", "work-log.html"},
    {"qdm::RoomsForm", "work-log.html"},
    {"qdm::SheetForm", "work-log.html"},
    {"qdm::LibraryConflictForm", "replace.html"},
}};

Message CannotOpen(const std::string& file) {
  return {Say("The help file cannot be opened.\r\n%1\r\nIt is installed beside the program; installing the "
              "editor "
              "again brings it back.",
              {file}),
          Say("Sorry"), MessageIcon::Exclamation};
}

#ifdef _WIN32
constexpr UINT kDisplayTopic = 0x0000;  // HH_DISPLAY_TOPIC
constexpr UINT kCloseAll = 0x0012;      // HH_CLOSE_ALL

// The viewer is a part of Windows that may be missing: loaded when it is first needed, never linked.
HWND CallViewer(HWND owner, const char* file, UINT command, DWORD_PTR data) {
  using HtmlHelpFunction = HWND(WINAPI*)(HWND, LPCSTR, UINT, DWORD_PTR);
  static const HMODULE library = LoadLibraryW(L"hhctrl.ocx");
  if (library == nullptr) return nullptr;
  static const auto htmlHelpA =
      reinterpret_cast<HtmlHelpFunction>(reinterpret_cast<void*>(GetProcAddress(library, "HtmlHelpA")));
  return htmlHelpA == nullptr ? nullptr : htmlHelpA(owner, file, command, data);
}
#endif

}  // namespace

Help::Help(const std::filesystem::path& programFolder, UserPrompts& prompts)
    : file_(programFolder / "qdm.chm"), prompts_(prompts) {}

Help::~Help() { CloseAll(); }

QString Help::PageFor(const QWidget* window) {
  for (; window != nullptr; window = window->parentWidget()) {
    for (const FormPage& entry : kFormPages) {
      if (window->inherits(entry.Form)) return QString::fromLatin1(entry.Page);
    }
  }
  return {};
}

QStringList Help::Pages() {
  QStringList pages;
  for (const FormPage& entry : kFormPages) pages.append(QString::fromLatin1(entry.Page));
  return pages;
}

void Help::ShowFor(QWidget* window) { Show(window, PageFor(window)); }

QString Help::FileName() const { return QString::fromStdString(PathToUtf8(file_)); }

void Help::Show(QWidget* owner, const QString& page) {
#ifdef _WIN32
  // The viewer's narrow interface takes the system's code page; a short name fits it whatever the folder is
  // called.
  const std::wstring wide = file_.wstring();
  std::wstring shortName(wide.size() + MAX_PATH, L'\0');
  shortName.resize(GetShortPathNameW(wide.c_str(), shortName.data(), static_cast<DWORD>(shortName.size())));
  const QByteArray target = QString::fromStdWString(shortName).toLocal8Bit() +
                            (page.isEmpty() ? QByteArray() : "::/" + page.toLatin1());
  HWND const window = owner == nullptr ? nullptr : reinterpret_cast<HWND>(owner->window()->winId());
  if (shortName.empty() || CallViewer(window, target.constData(), kDisplayTopic, 0) == nullptr) {
    prompts_.Show(owner, CannotOpen(PathToUtf8(file_)));
  }
#else
  if (!window_) {
    std::unique_ptr<ChmFile> file = ChmFile::Open(FileName());
    if (!file) {
      prompts_.Show(owner, CannotOpen(PathToUtf8(file_)));
      return;
    }
    window_ = new HelpWindow(std::move(file));
    window_->setAttribute(Qt::WA_DeleteOnClose);
  }
  Attach(owner);
  static_cast<HelpWindow*>(window_.data())->ShowPage(page);
  window_->show();
  window_->raise();
  window_->activateWindow();
#endif
}

// A modal dialog lets only its own children through, and help is needed while one is open: the help window
// follows the window that asked, and is let go when a dialog ends.
void Help::Attach(QWidget* owner) {
#ifndef _WIN32
  if (owner == nullptr || window_ == owner || window_->parentWidget() == owner) return;
  window_->setParent(owner, Qt::Window);
  if (auto* const dialog = qobject_cast<QDialog*>(owner)) {
    connect(dialog, &QDialog::finished, window_, [this] {
      window_->setParent(nullptr, Qt::Window);
      window_->show();
    });
  }
#else
  static_cast<void>(owner);
#endif
}

void Help::CloseAll() {
#ifdef _WIN32
  CallViewer(nullptr, nullptr, kCloseAll, 0);
#else
  delete window_;
#endif
}

bool Help::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress && watched->isWidgetType() &&
      static_cast<QKeyEvent*>(event)->key() == Qt::Key_F1) {
    ShowFor(static_cast<QWidget*>(watched)->window());
    return true;
  }
  return QObject::eventFilter(watched, event);
}

}  // namespace qdm
