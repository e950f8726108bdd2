// Takes what a record's text can hold on disk: printable characters of Windows-1252.
#pragma once

#include "base/code_page.h"

#include <QValidator>

#include <algorithm>

namespace qdm {

class NameValidator : public QValidator {
 public:
  using QValidator::QValidator;

  State validate(QString& text, int&) const override {
    const bool storable =
        std::all_of(text.cbegin(), text.cend(), [](QChar c) { return IsNameCharacter(c.unicode()); });
    return storable ? Acceptable : Invalid;
  }
};

}  // namespace qdm
