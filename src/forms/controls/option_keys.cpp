#include "forms/controls/option_keys.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QEvent>
#include <QKeyEvent>
#include <QWidget>

#include <algorithm>
#include <utility>

namespace qdm {
namespace {

class OptionKeys : public QObject {
 public:
  explicit OptionKeys(QButtonGroup* group) : QObject(group), group_(group) {
    for (QAbstractButton* button : group->buttons()) button->installEventFilter(this);
    connect(group, &QButtonGroup::buttonToggled, this, &OptionKeys::PlaceTabStop);
    PlaceTabStop();
  }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override {
    switch (event->type()) {
      case QEvent::KeyPress:
        return Press(static_cast<QAbstractButton*>(watched), static_cast<QKeyEvent*>(event)->key());
      case QEvent::EnabledChange:
      case QEvent::ShowToParent:
      case QEvent::HideToParent:
        PlaceTabStop();
        return false;
      default:
        return false;
    }
  }

 private:
  static bool CanBeChosen(const QAbstractButton* button) {
    return button->isEnabled() && !button->isHidden();
  }

  void PlaceTabStop() {
    const QList<QAbstractButton*> buttons = group_->buttons();
    QAbstractButton* stop = group_->checkedButton();
    if (stop == nullptr || !CanBeChosen(stop)) {
      const auto first = std::find_if(buttons.begin(), buttons.end(), CanBeChosen);
      stop = first == buttons.end() ? nullptr : *first;
    }
    for (QAbstractButton* button : buttons)
      button->setFocusPolicy(button == stop ? Qt::StrongFocus : Qt::ClickFocus);
  }

  // As they are read: they may stand in the group by their codes.
  QList<QAbstractButton*> InReadingOrder() const {
    QList<QAbstractButton*> buttons = group_->buttons();
    const auto place = [](const QAbstractButton* button) {
      const QPoint at = button->mapTo(button->window(), QPoint());
      return std::pair(at.y(), at.x());
    };
    std::stable_sort(buttons.begin(), buttons.end(),
                     [&](const auto* a, const auto* b) { return place(a) < place(b); });
    return buttons;
  }

  bool Press(QAbstractButton* from, int key) {
    const bool back = key == Qt::Key_Left || key == Qt::Key_Up;
    if (!back && key != Qt::Key_Right && key != Qt::Key_Down) return false;
    const QList<QAbstractButton*> buttons = InReadingOrder();
    const qsizetype step = back ? -1 : 1;
    qsizetype at = buttons.indexOf(from);
    do {
      at += step;
    } while (at >= 0 && at < buttons.size() && !CanBeChosen(buttons[at]));
    if (at < 0 || at >= buttons.size()) return true;
    buttons[at]->setFocus(back ? Qt::BacktabFocusReason : Qt::TabFocusReason);
    buttons[at]->click();
    return true;
  }

  QButtonGroup* group_;
};

}  // namespace

void FollowKeysInGroupsOf(QWidget* window) {
  for (QButtonGroup* group : window->findChildren<QButtonGroup*>()) {
    if (group->exclusive()) new OptionKeys(group);
  }
}

}  // namespace qdm
