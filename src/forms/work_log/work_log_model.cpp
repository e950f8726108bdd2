#include "forms/work_log/work_log_model.h"

#include "base/words.h"
#include "forms/shared/qt_text.h"

#include <QDateTime>
#include <QTimer>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstddef>
#include <numeric>
#include <optional>
#include <string_view>
#include <tuple>
#include <utility>

namespace qdm {
namespace {

// Nearly all names are plain letters, for which QString's rules are not needed.
void AppendLowerCase(std::string& to, std::string_view text) {
  const bool plain =
      std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 0x80; });
  if (!plain) {
    to += ToText(text).toLower().toStdString();
    return;
  }
  for (const char c : text) to += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// "2026-11-21 16:50" of many moments. The system is asked for its offset once a day, and always on days on
// which that changes.
class LocalTimes {
 public:
  std::string Text(std::chrono::sys_seconds time) {
    const auto day = std::chrono::floor<std::chrono::days>(time);
    if (day != day_) {
      day_ = day;
      offset_ = OffsetAt(day);
      steady_ = OffsetAt(day + std::chrono::days(1)) == offset_;
    }
    std::string text = Iso8601(time + (steady_ ? offset_ : OffsetAt(time)));
    text.resize(kMinutes);
    text[kDate] = ' ';
    return text;
  }

 private:
  static constexpr std::size_t kDate = 10;     // characters of "2026-11-21"
  static constexpr std::size_t kMinutes = 16;  // up to the seconds

  static std::chrono::seconds OffsetAt(std::chrono::sys_seconds time) {
    return std::chrono::seconds(
        QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count()).offsetFromUtc());
  }

  std::optional<std::chrono::sys_days> day_;
  std::chrono::seconds offset_{};
  bool steady_ = false;
};

QString CellText(const WorkLogEntry& e, int column) {
  switch (column) {
    case WorkLogModel::Time:
      return LocalTimeText(e.Began);
    case WorkLogModel::Configuration:
      return ToText(e.Title);
    case WorkLogModel::Panel:
      return ToText(IdentificationText(e.Panel));
    case WorkLogModel::Port:
      return ToText(e.Port);
    case WorkLogModel::Settings:
      return ToText(e.Settings);
    case WorkLogModel::Records:
      return QString::number(e.Records);
    case WorkLogModel::Retries:
      return QString::number(e.Retries);
    case WorkLogModel::Outcome:
      return Said(OutcomeText(e.Outcome));
    default:
      return ToText(HexDigits(e.Image).substr(0, 12));
  }
}

bool Before(const WorkLogEntry& a, const WorkLogEntry& b, int column) {
  switch (column) {
    case WorkLogModel::Time:
      return a.Number < b.Number;
    case WorkLogModel::Configuration:
      return a.Title < b.Title;
    case WorkLogModel::Panel:
      return std::tie(a.Panel.Model, a.Panel.Major, a.Panel.Minor) <
             std::tie(b.Panel.Model, b.Panel.Major, b.Panel.Minor);
    case WorkLogModel::Port:
      return a.Port.size() != b.Port.size() ? a.Port.size() < b.Port.size() : a.Port < b.Port;
    case WorkLogModel::Settings:
      return a.Settings < b.Settings;
    case WorkLogModel::Records:
      return a.Records < b.Records;
    case WorkLogModel::Retries:
      return a.Retries < b.Retries;
    case WorkLogModel::Outcome:
      return a.Outcome < b.Outcome;
    default:
      return a.Image < b.Image;
  }
}

QString CsvCell(QString text) {
  // A spreadsheet takes what begins like this for a formula.
  if (!text.isEmpty() && QStringLiteral("=+-@").contains(text.front())) text.prepend(QLatin1Char('\''));
  if (!text.contains(QLatin1Char(',')) && !text.contains(QLatin1Char('"'))) return text;
  return QLatin1Char('"') + text.replace(QLatin1Char('"'), QLatin1String("\"\"")) + QLatin1Char('"');
}

}  // namespace

QString LocalTimeText(std::chrono::sys_seconds time) {
  return QString::fromStdString(LocalTimes().Text(time));
}

void WorkLogModel::SetEntries(std::vector<WorkLogEntry> entries) {
  beginResetModel();
  entries_ = std::move(entries);
  ends_.clear();
  order_.resize(entries_.size());
  std::iota(order_.begin(), order_.end(), 0U);
  Resort();
  Refilter();
  endResetModel();
  // When the window has been painted, and before the first key.
  QTimer::singleShot(0, this, &WorkLogModel::MakeTexts);
}

void WorkLogModel::MakeTexts() {
  if (ends_.size() == entries_.size()) return;
  LocalTimes times;
  constexpr std::size_t kUsualText = 100;
  texts_.clear();
  texts_.reserve(entries_.size() * kUsualText);
  ends_.clear();
  ends_.reserve(entries_.size());
  for (const WorkLogEntry& entry : entries_) {
    texts_ += times.Text(entry.Began);
    const std::string panel = IdentificationText(entry.Panel);
    const std::string outcome = Say(OutcomeText(entry.Outcome));
    const std::array<std::string_view, 6> parts = {entry.Title,  panel,          entry.Port,
                                                   entry.Device, entry.Settings, outcome};
    for (const std::string_view part : parts) {
      texts_ += '\n';
      AppendLowerCase(texts_, part);
    }
    texts_ += '\n';
    ends_.push_back(texts_.size());
  }
}

void WorkLogModel::SetFilter(const QString& filter) {
  std::vector<std::string> words;
  for (const QString& word : filter.toLower().split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    words.push_back(word.toStdString());
  }
  beginResetModel();
  words_ = std::move(words);
  Refilter();
  endResetModel();
}

// By entry. A word has no line break, so it is found within one entry's part.
std::vector<bool> WorkLogModel::Matching(const std::string& word) const {
  std::vector<bool> matching(entries_.size(), false);
  std::size_t entry = 0;
  for (std::size_t at = 0; (at = texts_.find(word, at)) != std::string::npos; at = ends_[entry]) {
    while (ends_[entry] <= at) ++entry;
    matching[entry] = true;
  }
  return matching;
}

void WorkLogModel::Refilter() {
  shown_ = order_;
  if (words_.empty()) return;
  MakeTexts();
  for (const std::string& word : words_) {
    const std::vector<bool> matching = Matching(word);
    std::erase_if(shown_, [&matching](std::uint32_t entry) { return !matching[entry]; });
  }
}

// Entries come newest first, and stay so among equals.
void WorkLogModel::Resort() {
  std::sort(order_.begin(), order_.end());
  if (column_ == Time) {
    if (direction_ == Qt::AscendingOrder) std::reverse(order_.begin(), order_.end());
    return;
  }
  std::stable_sort(order_.begin(), order_.end(), [this](std::uint32_t a, std::uint32_t b) {
    return direction_ == Qt::AscendingOrder ? Before(entries_[a], entries_[b], column_)
                                            : Before(entries_[b], entries_[a], column_);
  });
}

void WorkLogModel::sort(int column, Qt::SortOrder order) {
  if (column == column_ && order == direction_) return;
  beginResetModel();
  column_ = column;
  direction_ = order;
  Resort();
  Refilter();
  endResetModel();
}

QString WorkLogModel::AsCsv() const {
  const InEnglish asFile;
  QString text;
  const auto addLine = [&text](auto cell) {
    for (int column = 0; column < kColumns; ++column) {
      if (column > 0) text += QLatin1Char(',');
      text += CsvCell(cell(column));
    }
    text += QLatin1String("\r\n");
  };
  addLine([this](int column) { return headerData(column, Qt::Horizontal, Qt::DisplayRole).toString(); });
  for (const std::uint32_t entry : shown_) {
    addLine([&](int column) { return CellText(entries_[entry], column); });
  }
  return text;
}

int WorkLogModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

int WorkLogModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : kColumns; }

QVariant WorkLogModel::data(const QModelIndex& index, int role) const {
  if (role == Qt::DisplayRole || role == Qt::ToolTipRole)
    return CellText(EntryAt(index.row()), index.column());
  return {};
}

QVariant WorkLogModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  constexpr std::array<const char*, kColumns> kCaptions = {
      Marked("Time"),    Marked("Configuration"), Marked("Panel"),   Marked("Port"), Marked("Settings"),
      Marked("Records"), Marked("Retries"),       Marked("Outcome"), Marked("Image")};
  return Said(kCaptions.at(static_cast<std::size_t>(section)));
}

}  // namespace qdm
