#include "forms/shared/fit_to_screen.h"

#include <QApplication>
#include <QFrame>
#include <QLayout>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QWidget>

#include <algorithm>

namespace qdm {
namespace {

constexpr int kSpare = 8;        // pixels, for labels that get their texts later
constexpr QSize kFrame(16, 48);  // pixels that a window's title and borders take, at the most

}  // namespace

void FitToScreen(QWidget& window, QScrollArea& area) {
  area.setFrameShape(QFrame::NoFrame);
  area.setWidgetResizable(true);
  area.setFocusPolicy(Qt::NoFocus);  // what stands in it has the focus
  area.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  const QWidget* content = area.widget();
  // Sizes are final once the style knows the controls.
  for (const QWidget* control : window.findChildren<QWidget*>()) control->ensurePolished();
  content->layout()->activate();
  area.setMinimumWidth(content->minimumSizeHint().width() + area.verticalScrollBar()->sizeHint().width());
  const int more = std::max(0, content->sizeHint().height() + kSpare - area.sizeHint().height());
  const QSize wanted = window.sizeHint() + QSize(0, more);
  window.resize(wanted.boundedTo(window.screen()->availableSize() - kFrame));
}

void FollowFocus(QApplication& application) {
  const auto follow = [](QWidget*, QWidget* now) {
    // What is pressed by the mouse must not move away from under it.
    if (now == nullptr || QGuiApplication::mouseButtons() != Qt::NoButton) return;
    for (QWidget* around = now->parentWidget(); around != nullptr; around = around->parentWidget()) {
      if (auto* area = qobject_cast<QScrollArea*>(around)) area->ensureWidgetVisible(now);
    }
  };
  QObject::connect(&application, &QApplication::focusChanged, &application, follow);
}

}  // namespace qdm
