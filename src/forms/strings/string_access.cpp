#include "forms/strings/string_access.h"

#include "forms/strings/choice_popup.h"

#include <QAccessible>
#include <QAccessibleWidget>
#include <QLabel>

namespace qdm {
namespace {

// A widget whose open pop-ups are its last children: Qt leaves windows out.
class WithPopups : public QAccessibleWidget {
 public:
  WithPopups(QWidget* widget, QAccessible::Role role) : QAccessibleWidget(widget, role) {}

  int childCount() const override {
    return QAccessibleWidget::childCount() + static_cast<int>(Popups().size());
  }
  QAccessibleInterface* child(int index) const override {
    const int own = QAccessibleWidget::childCount();
    if (index < own) return QAccessibleWidget::child(index);
    return QAccessible::queryAccessibleInterface(Popups().value(index - own));
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    const auto place = static_cast<int>(Popups().indexOf(qobject_cast<QWidget*>(child->object())));
    return place < 0 ? QAccessibleWidget::indexOfChild(child) : QAccessibleWidget::childCount() + place;
  }

 private:
  QList<QWidget*> Popups() const {
    QList<QWidget*> popups;
    for (QWidget* child : widget()->findChildren<QWidget*>(Qt::FindDirectChildrenOnly)) {
      if (child->windowType() == Qt::Popup && child->isVisible()) popups << child;
    }
    return popups;
  }
};

// A caption of a choice: the highlighted one has the focus.
class ChoiceItem : public QAccessibleWidget {
 public:
  ChoiceItem(QWidget* label, const ChoicePopup& popup)
      : QAccessibleWidget(label, QAccessible::MenuItem), popup_(popup) {}

  QString text(QAccessible::Text which) const override {
    return which == QAccessible::Name ? qobject_cast<QLabel*>(widget())->text()
                                      : QAccessibleWidget::text(which);
  }
  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.focusable = state.selectable = widget()->isEnabled();
    state.focused = state.selected = popup_.Highlighted() == widget();
    return state;
  }

 private:
  const ChoicePopup& popup_;
};

QAccessibleInterface* MakeInterface(const QString& className, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  if (widget == nullptr) return nullptr;
  if (className == QLatin1String("qdm::SerialEditor")) return new WithPopups(widget, QAccessible::Dialog);
  if (className == QLatin1String("qdm::SerialStringDisplay")) {
    return new WithPopups(widget, QAccessible::Button);
  }
  if (className == QLatin1String("qdm::MyTextBox")) {
    return new WithPopups(widget, QAccessible::EditableText);
  }
  if (className == QLatin1String("qdm::StringPicture")) {
    return new QAccessibleWidget(widget, QAccessible::StaticText);
  }
  if (className == QLatin1String("qdm::ChoicePopup")) {
    return new QAccessibleWidget(widget, QAccessible::PopupMenu);
  }
  const auto* popup = qobject_cast<ChoicePopup*>(widget->parentWidget());
  if (popup != nullptr && className == QLatin1String("QLabel")) return new ChoiceItem(widget, *popup);
  return nullptr;
}

}  // namespace

void InstallStringAccess() { QAccessible::installFactory(MakeInterface); }

}  // namespace qdm
