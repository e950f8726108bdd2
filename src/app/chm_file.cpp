#include "app/chm_file.h"

#include <QFile>
#include <QRegularExpression>

#include <chm_lib.h>

#include <algorithm>

namespace qdm {
namespace {

constexpr auto kContentsPath = "/contents.hhc";

}  // namespace

std::unique_ptr<ChmFile> ChmFile::Open(const QString& fileName) {
  chmFile* const file = chm_open(QFile::encodeName(fileName).constData());
  return file == nullptr ? nullptr : std::unique_ptr<ChmFile>(new ChmFile(file));
}

ChmFile::~ChmFile() { chm_close(file_); }

std::optional<QByteArray> ChmFile::Read(const QString& path) const {
  const QByteArray name = path.toUtf8();
  if (name.size() > CHM_MAX_PATHLEN) return std::nullopt;
  chmUnitInfo unit{};
  if (chm_resolve_object(file_, name.constData(), &unit) != CHM_RESOLVE_SUCCESS) return std::nullopt;
  QByteArray bytes(static_cast<qsizetype>(unit.length), '\0');
  auto* const buffer = reinterpret_cast<unsigned char*>(bytes.data());
  const LONGINT64 read = chm_retrieve_object(file_, &unit, buffer, 0, static_cast<LONGINT64>(bytes.size()));
  if (read != static_cast<LONGINT64>(bytes.size())) return std::nullopt;
  return bytes;
}

// The contents are nested lists of objects with a "Name" and a "Local" parameter.
std::vector<HelpTopic> ChmFile::Contents() const {
  static const QRegularExpression kTag(
      QStringLiteral(
          "<(ul|/ul|/object)\\b[^>]*>|<param\\s+name=\"(Name|Local)\"\\s+value=\"([^\"]*)\"\\s*/?>"),
      QRegularExpression::CaseInsensitiveOption);
  std::vector<HelpTopic> topics;
  HelpTopic topic;
  int level = -1;
  const QString text = QString::fromUtf8(Read(QLatin1String(kContentsPath)).value_or(QByteArray()));
  for (auto tags = kTag.globalMatch(text); tags.hasNext();) {
    const QRegularExpressionMatch tag = tags.next();
    const QString kind = tag.captured(1).toLower();
    if (kind == QLatin1String("ul")) {
      ++level;
    } else if (kind == QLatin1String("/ul")) {
      --level;
    } else if (kind == QLatin1String("/object")) {
      topic.Level = std::max(level, 0);
      if (!topic.Title.isEmpty() && !topic.Path.isEmpty()) topics.push_back(topic);
      topic = {};
    } else if (tag.captured(2).compare(QLatin1String("Name"), Qt::CaseInsensitive) == 0) {
      topic.Title = tag.captured(3).replace(QLatin1String("&amp;"), QLatin1String("&"));
    } else {
      topic.Path = QLatin1Char('/') + tag.captured(3);
    }
  }
  return topics;
}

}  // namespace qdm
