// What holds for every window: whoever cannot see it hears everything, and in another language everything is
// translated and nothing is cut.
#include "forms/every_form/every_form.h"

#include "app/language.h"
#include "base/words.h"

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QAccessible>
#include <QAction>
#include <QApplication>
#include <QComboBox>
#include <QFile>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QRadioButton>
#include <QRegularExpression>
#include <QSpinBox>
#include <QTabBar>
#include <QTextBrowser>
#include <QTextDocument>

#include <gmock/gmock.h>

#include <optional>
#include <set>

namespace qdm {
namespace {

// Most laptops' screen, before there is an application.
[[maybe_unused]] const bool kScreen =
    qputenv("QT_QPA_PLATFORM", "offscreen:configfile=" QDM_SOURCE_DIR "/tests/forms/every_form/screen.json");
constexpr QSize kRoom(1366, 728);  // above a task bar

struct EveryFormTest : testing::TestWithParam<FormState> {
  void Show(const LookAt& look) {
    World.Prompts.Answers = {true};
    GetParam().Show(World, look);
  }
  FormWorld World;
};

std::string NameOf(const QObject& object) {
  std::string name = object.metaObject()->className();
  name += ' ' + object.objectName().toStdString();
  if (object.objectName().isEmpty() && object.parent() != nullptr) {
    name += "in " + object.parent()->objectName().toStdString();
  }
  return name;
}

// Of a control that speaks for itself.
bool IsPart(const QWidget& widget) {
  for (const char* part :
       {"QHeaderView", "QScrollBar", "QTableCornerButton", "QToolBarSeparator", "QSizeGrip"}) {
    if (widget.inherits(part)) return true;
  }
  const QWidget* parent = widget.parentWidget();
  return parent != nullptr &&
         (parent->inherits("QAbstractSpinBox") || parent->inherits("QAbstractScrollArea")) &&
         (widget.objectName().startsWith(QLatin1String("qt_")) || widget.objectName().isEmpty());
}

std::vector<QWidget*> VisibleIn(QWidget& window) {
  std::vector<QWidget*> visible = {&window};
  for (QWidget* child : window.findChildren<QWidget*>()) {
    if (child->isVisibleTo(&window) && child->window() == &window) visible.push_back(child);
  }
  return visible;
}

// Everything that can be read in or about a widget.
QStringList TextsOf(const QWidget& widget) {
  QStringList texts = {widget.windowTitle(), widget.toolTip(),        widget.statusTip(),
                       widget.whatsThis(),   widget.accessibleName(), widget.accessibleDescription()};
  for (const QAction* action : widget.actions()) {
    texts << action->text() << action->toolTip() << action->statusTip();
  }
  const auto text = [&](const char* property) { texts << widget.property(property).toString(); };
  for (const char* property :
       {"text", "title", "placeholderText", "plainText", "format", "suffix", "prefix", "specialValueText"}) {
    if (qobject_cast<const QLineEdit*>(&widget) == nullptr || qstrcmp(property, "text") != 0) text(property);
  }
  if (const auto* label = qobject_cast<const QLabel*>(&widget); label && label->text().contains(u'<')) {
    QTextDocument document;
    document.setHtml(label->text());
    texts.removeAll(label->text());
    texts << document.toPlainText();
  }
  if (const auto* box = qobject_cast<const QComboBox*>(&widget)) {
    for (int i = 0; i < box->count(); ++i)
      texts << box->itemText(i) << box->itemData(i, Qt::ToolTipRole).toString();
  }
  if (const auto* tabs = qobject_cast<const QTabBar*>(&widget)) {
    for (int i = 0; i < tabs->count(); ++i) texts << tabs->tabText(i) << tabs->tabToolTip(i);
  }
  if (widget.objectName() == QLatin1String("Contents")) return texts;  // the help is English
  const auto* view = qobject_cast<const QAbstractItemView*>(&widget);
  if (view == nullptr || view->model() == nullptr) return texts;
  const QAbstractItemModel& model = *view->model();
  const std::function<void(const QModelIndex&)> walk = [&](const QModelIndex& parent) {
    for (int row = 0; row < model.rowCount(parent); ++row) {
      for (int column = 0; column < model.columnCount(parent); ++column) {
        const QModelIndex index = model.index(row, column, parent);
        for (const int role : {Qt::DisplayRole, Qt::ToolTipRole, Qt::AccessibleTextRole}) {
          texts << index.data(role).toString();
        }
        if (column == 0) walk(index);
      }
    }
  };
  walk({});
  if (qobject_cast<const QHeaderView*>(view) != nullptr) {
    for (int i = 0; i < model.columnCount(); ++i) {
      texts << model.headerData(i, Qt::Horizontal).toString()
            << model.headerData(i, Qt::Horizontal, Qt::ToolTipRole).toString();
    }
  }
  return texts;
}

// What is left of a text when what is said alike in every language is taken out: the names of products,
// ports, files and keys, bytes and line settings, and what the page of a manual says. The made-up language
// has no plain letters.
QString Untranslated(QString text) {
  static const QRegularExpression kSame(QStringLiteral(
      "Brevan( QDM Editor)?|QDM "
      "?[467]|TL-VOX|\\bCOM\\d+|\\S*\\.(BVC|BVD|DEF|ini|example)\\b|\\S*qdm-test-\\S*|"
      "\\b(F\\d+|Del|Ins|Return|Space|(Ctrl|Shift|Alt)(\\+\\w+)*)\\b|<[^>]*>|\\\\x\\d\\d|Power o(n|ff)\\b|"
      "\\d+,[neo],8,\\d|\\b\\d+[kK]\\d|\\b([0-9A-F]{2}h?|\\d{3}d|Variable|Ignore)\\b|\\b[0-9a-f]{64}\\b|"
      "\\b(ASC|HEX|DEC|BIN|CNT|VAR|IGN)\\b|\\b(NUL|S[OT][HX]|E[OT][TX]|ENQ|ACK|BEL|[BHVC][STR]|[LF]F|S[OI]|"
      "DLE|"
      "DC\\d|NAK|SYN|ETB|CAN|EM|SUB|ESC|[FGRU]S)c?\\b"));
  text.remove(kSame);
  text.remove(QRegularExpression(QStringLiteral("[^A-Za-z]+")));
  return text;
}

// Wider than what it is given, or higher.
bool IsCut(const QWidget& widget) {
  constexpr int kStyle = 2;  // pixels that a style adds around a text
  const auto misses = [&](QSize wanted) {
    return wanted.width() > widget.width() || wanted.height() > widget.height() + kStyle;
  };
  if (const auto* label = qobject_cast<const QLabel*>(&widget)) {
    if (label->text().isEmpty() || label->inherits("qdm::ElidedLabel") || label->toolTip() == label->text())
      return false;
    return label->wordWrap() ? label->heightForWidth(label->width()) > label->height()
                             : misses(label->sizeHint());
  }
  if (const auto* button = qobject_cast<const QAbstractButton*>(&widget)) {
    return !button->text().isEmpty() && misses(button->sizeHint());
  }
  if (const auto* box = qobject_cast<const QGroupBox*>(&widget)) {
    return box->fontMetrics().horizontalAdvance(box->title()) > box->width();
  }
  if (const auto* box = qobject_cast<const QComboBox*>(&widget)) return misses(box->minimumSizeHint());
  if (const auto* tabs = qobject_cast<const QTabBar*>(&widget))
    return tabs->sizeHint().width() > tabs->width();
  if (const auto* header = qobject_cast<const QHeaderView*>(&widget)) {
    for (int i = 0; i < header->count() && header->orientation() == Qt::Horizontal; ++i) {
      if (!header->isSectionHidden(i) && header->sectionSize(i) < header->sectionSizeHint(i)) return true;
    }
  }
  return false;
}

TEST_P(EveryFormTest, SaysEverythingInTheLanguageThatIsLoaded) {
  Language language;
  ASSERT_TRUE(language.Load(QStringLiteral(QDM_BINARY_DIR "/made-up.qm")));
  std::set<std::string> untranslated;
  std::set<std::string> cut;
  Show([&](QWidget& window) {
    EXPECT_LE(window.width(), kRoom.width());
    EXPECT_LE(window.height(), kRoom.height());
    for (const QWidget* widget : VisibleIn(window)) {
      if (IsCut(*widget)) {
        const QSize wanted = widget->sizeHint();
        cut.insert(NameOf(*widget) + ": " + std::to_string(widget->width()) + " x " +
                   std::to_string(widget->height()) + " of " + std::to_string(wanted.width()) + " x " +
                   std::to_string(wanted.height()));
      }
      for (const QString& text : TextsOf(*widget)) {
        if (!Untranslated(text).isEmpty()) untranslated.insert(NameOf(*widget) + ": " + text.toStdString());
      }
    }
  });
  for (const Message& message : World.Prompts.Shown) {
    for (const std::string& text : {message.Title, message.Text, message.Detail}) {
      if (!Untranslated(QString::fromStdString(text)).isEmpty()) untranslated.insert(text);
    }
  }
  EXPECT_THAT(untranslated, testing::IsEmpty());
  EXPECT_THAT(cut, testing::IsEmpty());
}

// What a screen reader has to call a control of a class; nothing for what is no control.
std::optional<QAccessible::Role> RoleOf(const QWidget& widget) {
  static constexpr struct {
    const char* Class;
    QAccessible::Role Role;
  } kRoles[] = {
      {"qdm::MyTextBox", QAccessible::EditableText},
      {"qdm::SerialStringDisplay", QAccessible::Button},
      {"QTextBrowser", QAccessible::StaticText},
      {"QLineEdit", QAccessible::EditableText},
      {"QPlainTextEdit", QAccessible::EditableText},
      {"QTextEdit", QAccessible::EditableText},
      {"QRadioButton", QAccessible::RadioButton},
      {"QCheckBox", QAccessible::CheckBox},
      {"QComboBox", QAccessible::ComboBox},
      {"QAbstractSpinBox", QAccessible::SpinBox},
      {"QTreeView", QAccessible::Tree},
      {"QTableView", QAccessible::Table},
      {"QListView", QAccessible::List},
      {"QAbstractSlider", QAccessible::ScrollBar},
      {"QProgressBar", QAccessible::ProgressBar},
      {"QAbstractButton", QAccessible::Button},
  };
  for (const auto& known : kRoles) {
    if (widget.inherits(known.Class)) return known.Role;
  }
  return std::nullopt;
}

TEST_P(EveryFormTest, IsHeardWhole) {
  std::set<std::string> wrong;
  Show([&](QWidget& window) {
    for (QWidget* widget : VisibleIn(window)) {
      const QAccessibleInterface* heard = QAccessible::queryAccessibleInterface(widget);
      if (heard == nullptr || IsPart(*widget)) continue;
      const auto* label = qobject_cast<QLabel*>(widget);
      if (label != nullptr && label->text().isEmpty()) continue;
      const QString name = heard->text(QAccessible::Name);
      const auto role = RoleOf(*widget);
      const bool opensMenu = heard->role() == QAccessible::ButtonMenu && role == QAccessible::Button;
      if (role && heard->role() != *role && !opensMenu) {
        wrong.insert(NameOf(*widget) + " is heard as " + std::to_string(heard->role()));
      }
      if ((role || widget->focusPolicy() != Qt::NoFocus) && name.isEmpty()) {
        wrong.insert(NameOf(*widget) + " has no name");
      }
      if (label == nullptr) continue;
      if (label->text().contains(u'&') && label->buddy() == nullptr)
        wrong.insert(NameOf(*label) + " has no buddy");
      if (!label->accessibleName().isEmpty() && !name.contains(label->text()))
        wrong.insert(NameOf(*label) + " is hidden by its name");
    }
  });
  EXPECT_THAT(wrong, testing::IsEmpty());
}

TEST(ProgramLanguage, IsTheOneOfTheSystemWhereATranslationLiesBesideTheProgram) {
  const TempFolder folder;
  const QString place = QString::fromStdString(folder.Path().string());
  QFile::copy(QStringLiteral(QDM_BINARY_DIR "/made-up.qm"), place + QStringLiteral("/qdm-editor_de.qm"));
  {
    Language language;
    EXPECT_FALSE(language.Load(QLocale(QLocale::French), place));
    EXPECT_TRUE(language.Load(QLocale(QStringLiteral("de_AT")), place));
    EXPECT_EQ(Say("Sorry"), "[Śòŕŕý]");
  }
  EXPECT_EQ(Say("Sorry"), "Sorry");
}

INSTANTIATE_TEST_SUITE_P(Windows, EveryFormTest, testing::ValuesIn(EveryForm()), [](const auto& form) {
  std::string name = form.param.Name;
  std::erase(name, '.');
  return name;
});

}  // namespace
}  // namespace qdm
