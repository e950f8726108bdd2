#include "command_line/commands.h"
#include "command_line/message_text.h"
#include "command_line/record_files.h"
#include "config/configuration_sentences.h"
#include "projector_bench/code_check.h"

#include <ostream>
#include <string>

namespace qdm {

int Describe(const DescribeOptions& options, CommandContext& context) {
  const PanelConfiguration configuration = ReadConfigurationFile(options.File);
  const ConfigurationWords words = InWords(configuration);
  const CodeCheckResult codes = CheckCodes(configuration.Projector);
  for (const std::string& sentence : words.Sentences) context.Out << OneLine(sentence) << "\n";
  for (const std::string& sentence : FamilyText(codes.Family)) context.Out << sentence << "\n";
  for (const std::string& remark : words.Remarks) context.Out << "Note: " << OneLine(remark) << "\n";
  for (const CodeFinding& finding : codes.Findings) context.Out << "Note: " << finding.Text << ".\n";
  return kDone;
}

}  // namespace qdm
