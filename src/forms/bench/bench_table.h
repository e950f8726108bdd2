// What the pages of the projector bench share: texts of the core, and tables that show them.
#pragma once

#include <QHeaderView>
#include <QString>
#include <QTableWidget>

#include <string_view>

namespace qdm {

inline QString Text(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

// Columns as wide as their contents, the last one at least as wide as there is room.
inline void FitColumns(QTableWidget* table) {
  table->horizontalHeader()->setStretchLastSection(false);
  table->resizeColumnsToContents();
  table->horizontalHeader()->setStretchLastSection(true);
}

}  // namespace qdm
