// The strings that could be taken from a manual, a row each: a box that takes it, its candidates, the bytes
// in hexadecimal, and whether it is sure. Shows rows of a ManualDraft and says what the user did.
#pragma once

#include "projectors/manual_draft.h"
#include "projectors/slots.h"

#include <QWidget>

#include <array>
#include <cstddef>
#include <optional>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;

namespace qdm {

// What the user calls a command slot.
QString NameOf(std::size_t slot);

class ManualRows : public QWidget {
  Q_OBJECT

 public:
  explicit ManualRows(QWidget* parent = nullptr);

  void ShowRows(const std::vector<ManualRow>& rows);
  // Puts the row's name in bold and returns it; null where there is no such row.
  QWidget* PointOut(std::optional<std::size_t> slot);

 Q_SIGNALS:
  void Ticked(std::size_t slot, bool ticked);
  void Chosen(std::size_t slot, std::size_t candidate);
  // The keyboard's focus has come to the row.
  void Entered(std::size_t slot);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  struct Cells {
    QCheckBox* Take = nullptr;
    QComboBox* Candidates = nullptr;
    QLabel* Bytes = nullptr;
    QLabel* Verdict = nullptr;
  };

  void MakeRow(std::size_t slot, int line);
  void ShowRow(const Cells& cells, const ManualRow& row);
  QString VerdictOf(const ManualRow& row) const;
  void ShowColours();

  std::array<Cells, kCommandSlots> cells_;
};

}  // namespace qdm
