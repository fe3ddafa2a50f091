#include "bridge/catalogue/literals.h"

#include <gtest/gtest.h>

#include <sstream>

#include "framework/std/exception.h"
#include "tests/support/corpus.h"

namespace {

class LastEvent : public TAVLog {
 public:
  void logEvent(const TAVLogEvent& event) override {
    text = std::string(tav::severityName(event.getSeverity())) + "|" + event.getMessageId().str() + "|" +
           event.getText().str() + "|" + event.getExtra().str();
  }
  std::string text;
};

template <class Message, class... Arguments>
std::string showMessage(const Message& message, const Arguments&... arguments) {
  LastEvent log;
  message.log(log, TAVString(arguments)...);
  try {
    message.throwException(TAVString(arguments)...);
  } catch (const TAVException& failure) {
    EXPECT_FALSE(failure.getStackTrace().empty());
    EXPECT_EQ(failure.getMessage(), message.getMessage(TAVString(arguments)...));
    return "thrown: " + failure.getMessage().str() + "\nlogged: " + log.text;
  }
}

TEST(Literals, Messages) {
  tav::test::checkCorpus("bridge/messages.txt", [](const std::string& input) -> std::string {
    std::istringstream words(input);
    std::string literal, first, second;
    words >> literal >> first >> second;
    if (literal == "IMPORT_CUBES") return showMessage(QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_CUBES);
    if (literal == "IMPORT_DIMENSIONS") return showMessage(QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DIMENSIONS);
    if (literal == "FILE_NOT_OPEN") return showMessage(QVT_SSXMLA::MICROSOFT_XMLA_I_FILE_NOT_OPEN, first);
    return showMessage(QVT_SSXMLA::MICROSOFT_XMLA_FEATURE_NOTFOUND, first, second);
  });
}

TEST(Literals, AreAllListedAndFoundByTheirKeys) {
  TAVVector literals;
  QVT_SSXMLA::getAllLiterals(literals);
  std::string keys;
  for (std::int32_t i = 0; i < literals.getCount(); ++i) {
    const auto* literal = static_cast<const TAVTextLiteral*>(literals[i]);
    EXPECT_EQ(QVT_SSXMLA::findTextLiteral(literal->getKey()), literal);
    keys += literal->getKey().str() + " ";
  }
  EXPECT_EQ(keys,
            "MicrosoftSqlServerXMLAImportDescription BP_FILE_DEFAULT BP_FILE 2 6 7 8 9 10 11 12 13 14 15 ");
  EXPECT_EQ(QVT_SSXMLA::findTextLiteral("16"), nullptr);
}

TEST(Literals, ReplacedTextIsWhatMessagesSay) {
  QVT_SSXMLA::MessageInstance_String message = QVT_SSXMLA::MICROSOFT_XMLA_I_FILE_NOT_OPEN;
  message.update("'{0}' ist nicht zu öffnen.");
  EXPECT_EQ(message.getMessage("a"), "[QVT_SSXMLA_F0002] 'a' ist nicht zu öffnen.");
  EXPECT_EQ(QVT_SSXMLA::MICROSOFT_XMLA_I_FILE_NOT_OPEN.toString("a"), "Unable to open 'a'.");
}

}  // namespace
