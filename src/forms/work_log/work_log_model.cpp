#include "forms/work_log/work_log_model.h"

#include <QDateTime>
#include <QLocale>

#include <algorithm>
#include <numeric>

namespace qdm {
namespace {

QString ToText(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Nearly all names are plain letters, for which QString's rules are not needed.
std::string LowerCase(std::string text) {
  bool plain = true;
  for (char& c : text) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    plain = plain && static_cast<unsigned char>(c) < 0x80;
  }
  return plain ? text : ToText(text).toLower().toStdString();
}

std::string SearchText(const WorkLogEntry& e) {
  std::string text = Iso8601(e.Began);
  for (const std::string& part : {e.Title, IdentificationText(e.Panel), e.Port, e.Device, e.Settings}) {
    text.append("\n").append(part);
  }
  text.append("\n").append(OutcomeText(e.Outcome));
  return LowerCase(text);
}

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
      return ToText(OutcomeText(e.Outcome));
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
      return IdentificationText(a.Panel) < IdentificationText(b.Panel);
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
  return QDateTime::fromSecsSinceEpoch(time.time_since_epoch().count())
      .toString(QStringLiteral("yyyy-MM-dd hh:mm"));
}

void WorkLogModel::SetEntries(std::vector<WorkLogEntry> entries) {
  beginResetModel();
  entries_ = std::move(entries);
  texts_.clear();
  order_.resize(entries_.size());
  std::iota(order_.begin(), order_.end(), 0U);
  Resort();
  Refilter();
  endResetModel();
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

bool WorkLogModel::Matches(std::uint32_t entry) const {
  return std::all_of(words_.begin(), words_.end(), [&text = texts_[entry]](const std::string& word) {
    return text.find(word) != std::string::npos;
  });
}

void WorkLogModel::Refilter() {
  if (words_.empty()) {
    shown_ = order_;
    return;
  }
  if (texts_.empty()) {
    texts_.reserve(entries_.size());
    for (const WorkLogEntry& entry : entries_) texts_.push_back(SearchText(entry));
  }
  shown_.clear();
  std::copy_if(order_.begin(), order_.end(), std::back_inserter(shown_),
               [this](std::uint32_t entry) { return Matches(entry); });
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
  const std::array<QString, kColumns> captions = {tr("Time"),    tr("Configuration"), tr("Panel"),
                                                  tr("Port"),    tr("Settings"),      tr("Records"),
                                                  tr("Retries"), tr("Outcome"),       tr("Image")};
  return captions.at(static_cast<std::size_t>(section));
}

}  // namespace qdm
