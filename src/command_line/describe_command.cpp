#include "command_line/commands.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "config/configuration_sentences.h"

#include <ostream>

namespace qdm {

int Describe(const DescribeOptions& options, CommandContext& context) {
  const ConfigurationWords words = InWords(ReadConfigurationFile(options.File));
  for (const std::string& sentence : words.Sentences) context.Out << OneLine(sentence) << "\n";
  for (const std::string& remark : words.Remarks) context.Out << "Note: " << OneLine(remark) << "\n";
  return kDone;
}

}  // namespace qdm
