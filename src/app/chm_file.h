// A compiled help file, read page by page. Paths are those inside the file ("/download.html"). Not used on
// Windows, which has a viewer of its own.
#pragma once

#include <QByteArray>
#include <QString>
#include <QStringList>

#include <memory>
#include <optional>
#include <vector>

struct chmFile;

namespace qdm {

struct HelpTopic {
  QString Title;
  QString Path;
  int Level = 0;  // depth in the table of contents, from 0
};

class ChmFile {
 public:
  // Nothing when the file is missing or not a compiled help file.
  static std::unique_ptr<ChmFile> Open(const QString& fileName);
  ~ChmFile();
  ChmFile(const ChmFile&) = delete;
  ChmFile& operator=(const ChmFile&) = delete;

  std::optional<QByteArray> Read(const QString& path) const;
  // The table of contents, in order.
  std::vector<HelpTopic> Contents() const;

 private:
  explicit ChmFile(chmFile* file) : file_(file) {}

  chmFile* file_;
};

}  // namespace qdm
