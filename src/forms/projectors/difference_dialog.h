// What the dialogs have in common in which the user chooses between two definitions of one name: the names,
// a table of what differs, and buttons. Closed by its close box or Escape it has chosen nothing.
#pragma once

#include "projectors/difference_text.h"

#include <QDialog>

#include <cstddef>
#include <memory>
#include <vector>

class QCheckBox;
class QPushButton;

namespace Ui {
class DifferenceDialog;
}

namespace qdm {

struct ProjectorDefinition;

// One of several questions: "3 of 17". The number may turn out higher than was foreseen.
struct QuestionPlace {
  std::size_t Number = 1;
  std::size_t Of = 1;
};

class DifferenceDialog : public QDialog {
  Q_OBJECT

 public:
  ~DifferenceDialog() override;

 protected:
  struct Texts {
    QString Title;
    QString Explanation;
    QString FirstColumn;  // whose values they are
    QString SecondColumn;
  };
  DifferenceDialog(const Texts& texts, const ProjectorDefinition& named, QWidget* parent);

  void ShowFrameTitle(const QString& title);
  void ShowPlace(const QuestionPlace& place);
  void ShowDifferences(const ProjectorDefinition& first, const ProjectorDefinition& second);
  QPushButton* AddButton(const char* name, const QString& caption);
  QCheckBox* AddForAllCheck(const QString& caption);
  // What a hasty Enter means.
  static void MakeDefault(QPushButton* button);

 private:
  std::unique_ptr<Ui::DifferenceDialog> ui_;
};

}  // namespace qdm
