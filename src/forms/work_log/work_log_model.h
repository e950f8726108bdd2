// The work log as a table: an in-memory list, a filter over all of its texts and sorting by any column, fast
// enough for the log of a large firm (50,000 downloads) at every key.
#pragma once

#include "work_log/work_log_entry.h"

#include <QAbstractTableModel>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace qdm {

class WorkLogModel : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column { Time, Configuration, Panel, Port, Settings, Records, Retries, Outcome, Image, kColumns };

  using QAbstractTableModel::QAbstractTableModel;

  void SetEntries(std::vector<WorkLogEntry> entries);
  // Shows the entries that have each of the filter's words somewhere, in either case.
  void SetFilter(const QString& filter);
  const WorkLogEntry& EntryAt(int row) const { return entries_[shown_[static_cast<std::size_t>(row)]]; }
  // All that is shown, with a line of captions, separated by commas.
  QString AsCsv() const;

  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  void sort(int column, Qt::SortOrder order) override;

 private:
  void MakeTexts();
  std::vector<bool> Matching(const std::string& word) const;
  void Refilter();
  void Resort();

  std::vector<WorkLogEntry> entries_;
  std::string texts_;                 // what the filter looks into, in lower case: of all entries in a row
  std::vector<std::size_t> ends_;     // of each entry's part of it; empty before it is needed
  std::vector<std::uint32_t> order_;  // all entries as they are sorted
  std::vector<std::uint32_t> shown_;  // those of them that match
  std::vector<std::string> words_;    // of the filter
  int column_ = Time;
  Qt::SortOrder direction_ = Qt::DescendingOrder;
};

// As a person reads it, in the local time zone.
QString LocalTimeText(std::chrono::sys_seconds time);

}  // namespace qdm
