// The family of small entry controls: a number that is typed into `Text1` or stepped with `Up` and `Down`.
// A held button steps at once, again after 1 s and then every 100 ms. `Changed` tells the owner, once per
// action of the user, to read the value: on mouse up, Enter, a key step and on losing focus, also when the
// text is as it was; not when the focus is lost because the window goes, which only stores the text. Text
// that cannot be read stands for the last value; text that is corrected is told below the entry. The mouse
// wheel changes nothing.
#pragma once

#include <QWidget>

#include <cstdint>
#include <limits>
#include <optional>

class QLineEdit;
class QTimer;
class QToolButton;

namespace qdm {

class SpinEntry : public QWidget {
  Q_OBJECT

 public:
  explicit SpinEntry(QWidget* parent = nullptr);

  // What range messages call the number: the beginning of the tool tip, and the accessible name of an entry
  // that has no caption.
  void SetLabel(const QString& label);
  // What stands beside the entry in the window: its accessible name.
  void SetCaption(const QString& caption);
  // What the number means to the panel, where it is not told by a unit beside it: the end of the tool tip.
  void SetMeaning(const QString& meaning);
  // Why the entry is disabled, instead of its range; empty while it is not.
  void SetReason(const QString& reason);

  // Takes what has been typed, as Enter does, but without telling the owner.
  void StoreText();

  void Up_MouseDown();
  void Down_MouseDown();
  // Of either button.
  void Button_MouseUp();
  void Timer1_Timer();

 Q_SIGNALS:
  void Changed();
  // The text has been edited and not yet been entered.
  void Edited();

 protected:
  // Of the fields of a record.
  static constexpr int kLowest = std::numeric_limits<std::int16_t>::min();
  static constexpr int kHighest = std::numeric_limits<std::int16_t>::max();

  // The value with its limits applied, as every way of setting it does. Values of all three controls are
  // exact in a double.
  virtual double Limited(double value) const = 0;
  virtual QString TextOf(double value) const = 0;
  // Trimmed text; nothing when it cannot be read.
  virtual std::optional<double> Parse(const QString& text) const = 0;
  virtual QString RangeText() const = 0;
  virtual QString WidestText() const = 0;

  struct Steps {
    double Size;
    double Floor;    // a step down ends here
    double Ceiling;  // a step up ends here
  };
  virtual Steps StepRule() const = 0;

  void SetCurrent(double value);
  // What the text says, limits applied, typed but not yet entered text included.
  double Current() const;
  // To be called at the end of each constructor of the family and whenever the range has changed.
  void ShowRange();

  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;
  void hideEvent(QHideEvent* event) override;

 private:
  enum class Held { None, Up, Down };

  bool Text1_KeyDown(int key);
  bool Text1_KeyUp(int key);
  void Text1_LostFocus();
  void HoldButton(Held button);
  void StopRepeat();
  void StepBy(int steps);
  void StoreAndRaise();
  void RaiseChanged();
  // Typed and not what entering it will make of it.
  bool HoldsWrongText() const;
  void ExplainRange();
  void FitText();

  QLineEdit* Text1;
  QToolButton* Up;
  QToolButton* Down;
  QTimer* Timer1;
  QString label_;
  QString caption_;
  QString meaning_;
  QString reason_;
  double value_ = 0;
  Held held_ = Held::None;
  bool raising_ = false;
};

}  // namespace qdm
