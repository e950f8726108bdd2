// `--demo`: the example library and one configuration in a temporary folder, which goes when this goes.
#pragma once

#include <QString>
#include <QTemporaryDir>

#include <filesystem>

namespace qdm {

class Demonstration {
 public:
  // Copies the examples, and `file` when one is named. Throws FileError when they cannot be found or copied.
  explicit Demonstration(const QString& file);

  std::filesystem::path Folder() const;
  // The copy of the file that was named, else of the first example configuration by name.
  const QString& Configuration() const { return configuration_; }

 private:
  QTemporaryDir folder_;
  QString configuration_;
};

}  // namespace qdm
