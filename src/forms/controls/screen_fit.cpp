#include "forms/controls/screen_fit.h"

#include <QScreen>
#include <QWidget>

namespace qdm {
namespace {

constexpr QSize kFrame(16, 40);  // what window managers put around a window, at most

}  // namespace

void FitToScreen(QWidget* window) {
  window->resize(window->size().boundedTo(window->screen()->availableSize() - kFrame));
}

}  // namespace qdm
