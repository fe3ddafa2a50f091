#include "bridge/catalogue/literals.h"

#include "framework/std/exception.h"

namespace {

// These come first in this file: the messages below read them while the plug-in is being loaded.
const TAVString kModuleName("TAVMicrosoftSqlServerXMLAImport");
const TAVString kCatalogueName("QVT_SSXMLA");
const TAVString kZeroFill("0000");
const TAVString kSeparator("_");

TAVString identifierOf(const TAVString& code, const TAVString& level) {
  return kCatalogueName + kSeparator + level.left(1) + kZeroFill.left(kZeroFill.length() - code.length()) +
         code;
}

TAVString messageOf(const TAVMessageLiteral& literal, const TAVString& text) {
  return "[" + literal.getMessageIdentifier() + "] " + text;
}

void logText(TAVLog& log, const TAVMessageLiteral& literal, const TAVString& text) {
  log.logEvent({text, literal.getMessageIdentifier(), literal.getLevel(), TAVString::getEmptyString()});
}

TAVStringArray arrayOf(std::initializer_list<std::string_view> texts) {
  TAVStringArray array;
  for (const std::string_view text : texts) array.add(text);
  return array;
}

}  // namespace

QVT_SSXMLA::TextInstance QVT_SSXMLA::BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT_DESCRIPTION(
    "MicrosoftSqlServerXMLAImportDescription",
    "The Metadata for the Microsoft SQL Server Analysis Services is managed by two tools, each of which "
    "produces a single XML file, with extension 'xmla' or 'asdatabase' respectively.\n\n"
    "A) SQL Server Business Intelligence Development Studio: The tool generates a file with extension "
    "'asdatabase', when the project is built. Please find the file in the project's bin directory, for "
    "example: 'C:\\Visual Studio 2005\\Projects\\Test\\bin\\Test.asdatabase'\n\n"
    "B) SQL Server Management Studio: The tool is used to connect to an existing Analysis Services server. "
    "One can export a single xmla file from the tool by choosing the database and using the command: "
    "'Script Database as->CREATE To -> File...'.\n");

QVT_SSXMLA::TextInstance QVT_SSXMLA::BP_FILE_DEFAULT("BP_FILE_DEFAULT", "");

QVT_SSXMLA::ParameterInstance QVT_SSXMLA::BP_FILE("BP_FILE", "File", OptionType::file,
                                                  "Specify here the AS database file path to import.",
                                                  nullptr, &QVT_SSXMLA::BP_FILE_DEFAULT);

QVT_SSXMLA::MessageInstance_String QVT_SSXMLA::MICROSOFT_XMLA_I_FILE_NOT_OPEN("2", "Unable to open '{0}'.",
                                                                              "FATAL");

QVT_SSXMLA::MessageInstance_String_String QVT_SSXMLA::MICROSOFT_XMLA_I_COULD_NOT_FIND_OBJECT(
    "6", "Failed to retrieve object of id '{0}' and expected type {1}", "WARNING");

QVT_SSXMLA::MessageInstance_String QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_MODEL("7", "Importing model '{0}' ...",
                                                                             "STATUS");

QVT_SSXMLA::MessageInstance QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DIMENSIONS("8", "Importing dimensions...",
                                                                           "STATUS");

QVT_SSXMLA::MessageInstance_String QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DIMENSION(
    "9", "Importing dimension '{0}' ...", "STATUS");

QVT_SSXMLA::MessageInstance QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_CUBES("10", "Importing cubes ...", "STATUS");

QVT_SSXMLA::MessageInstance_String QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_CUBE("11", "Importing cube '{0}' ...",
                                                                            "STATUS");

QVT_SSXMLA::MessageInstance QVT_SSXMLA::MICROSOFT_XMLA_I_IMPORT_DSVS("12", "Importing data source views ...",
                                                                     "STATUS");

QVT_SSXMLA::MessageInstance_String_String QVT_SSXMLA::MICROSOFT_XMLA_FEATURE_NOTFOUND(
    "13", "Could not find source feature '{0}' used in calculated expression '{1}'", "WARNING");

QVT_SSXMLA::MessageInstance_String_String QVT_SSXMLA::MICROSOFT_XMLA_STATEMENT_NOT_READ(
    "14", "The MDX script of cube '{0}' has a statement that could not be read: {1}", "WARNING");

QVT_SSXMLA::MessageInstance_String_String QVT_SSXMLA::MICROSOFT_XMLA_NO_SUCH_MEASURE(
    "15", "The MDX script of '{1}' creates the measure '{0}', which the model does not have", "WARNING");

QVT_SSXMLA::QVT_SSXMLA() : TAVTextLiteralsCollection(kModuleName, kCatalogueName) {
  add(BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT_DESCRIPTION);
  add(BP_FILE_DEFAULT);
  add(BP_FILE);
  add(MICROSOFT_XMLA_I_FILE_NOT_OPEN);
  add(MICROSOFT_XMLA_I_COULD_NOT_FIND_OBJECT);
  add(MICROSOFT_XMLA_I_IMPORT_MODEL);
  add(MICROSOFT_XMLA_I_IMPORT_DIMENSIONS);
  add(MICROSOFT_XMLA_I_IMPORT_DIMENSION);
  add(MICROSOFT_XMLA_I_IMPORT_CUBES);
  add(MICROSOFT_XMLA_I_IMPORT_CUBE);
  add(MICROSOFT_XMLA_I_IMPORT_DSVS);
  add(MICROSOFT_XMLA_FEATURE_NOTFOUND);
  add(MICROSOFT_XMLA_STATEMENT_NOT_READ);
  add(MICROSOFT_XMLA_NO_SUCH_MEASURE);
  init();
}

QVT_SSXMLA::~QVT_SSXMLA() = default;

QVT_SSXMLA& QVT_SSXMLA::initLiterals() {
  static QVT_SSXMLA catalogue;
  return catalogue;
}

const TAVTextLiteral* QVT_SSXMLA::findTextLiteral(const TAVString& key) {
  return initLiterals().get(key);
}

void QVT_SSXMLA::getAllLiterals(TAVVector& literals) {
  initLiterals().listAllLiterals(literals);
}

QVT_SSXMLA::TextInstance::TextInstance(const TAVString& key, const TAVString& text)
    : TAVParameterizedTextLiteral(key, text) {}
QVT_SSXMLA::TextInstance::TextInstance(const TextInstance& other) = default;
QVT_SSXMLA::TextInstance& QVT_SSXMLA::TextInstance::operator=(const TextInstance& other) = default;
QVT_SSXMLA::TextInstance::~TextInstance() = default;

TAVString QVT_SSXMLA::TextInstance::toString() const {
  initLiterals();
  return getText();
}

QVT_SSXMLA::ParameterInstance::ParameterInstance(const TAVString& key, const TAVString& name, OptionType type,
                                                 const TAVString& description,
                                                 const TAVBridgeOptionEnumerationLiteral* enumeration,
                                                 const TAVTextLiteral* defaultValue)
    : TAVBridgeOptionLiteral(key, name, type, description, enumeration, defaultValue) {}
QVT_SSXMLA::ParameterInstance::ParameterInstance(const ParameterInstance& other) = default;
QVT_SSXMLA::ParameterInstance& QVT_SSXMLA::ParameterInstance::operator=(const ParameterInstance& other) =
    default;
QVT_SSXMLA::ParameterInstance::~ParameterInstance() = default;

void QVT_SSXMLA::ParameterInstance::initParameter() {
  initLiterals();
}

QVT_SSXMLA::MessageInstance::MessageInstance(const TAVString& code, const TAVString& text,
                                             const TAVString& level)
    : TAVMessageLiteral(code, text, level) {
  setMessageIdentifier(identifierOf(code, level));
}
QVT_SSXMLA::MessageInstance::MessageInstance(const MessageInstance& other) = default;
QVT_SSXMLA::MessageInstance& QVT_SSXMLA::MessageInstance::operator=(const MessageInstance& other) = default;
QVT_SSXMLA::MessageInstance::~MessageInstance() = default;

TAVString QVT_SSXMLA::MessageInstance::getMessage() const {
  return messageOf(*this, toString());
}

TAVString QVT_SSXMLA::MessageInstance::toString() const {
  initLiterals();
  return getText();
}

void QVT_SSXMLA::MessageInstance::log(TAVLog& log) const {
  logText(log, *this, toString());
}

void QVT_SSXMLA::MessageInstance::throwException() const {
  throw TAVException(getMessage(), buildStackTrace());
}

QVT_SSXMLA::MessageInstance_String::MessageInstance_String(const TAVString& code, const TAVString& text,
                                                           const TAVString& level)
    : TAVMessageLiteral(code, text, level) {
  setMessageIdentifier(identifierOf(code, level));
}
QVT_SSXMLA::MessageInstance_String::MessageInstance_String(const MessageInstance_String& other) = default;
QVT_SSXMLA::MessageInstance_String& QVT_SSXMLA::MessageInstance_String::operator=(
    const MessageInstance_String& other) = default;
QVT_SSXMLA::MessageInstance_String::~MessageInstance_String() = default;

TAVString QVT_SSXMLA::MessageInstance_String::getMessage(const TAVString& argument) const {
  return messageOf(*this, toString(argument));
}

TAVString QVT_SSXMLA::MessageInstance_String::toString(const TAVString& argument) const {
  initLiterals();
  return createParameterizedText(arrayOf({argument}));
}

void QVT_SSXMLA::MessageInstance_String::log(TAVLog& log, const TAVString& argument) const {
  logText(log, *this, toString(argument));
}

void QVT_SSXMLA::MessageInstance_String::throwException(const TAVString& argument) const {
  throw TAVException(getMessage(argument), buildStackTrace());
}

QVT_SSXMLA::MessageInstance_String_String::MessageInstance_String_String(const TAVString& code,
                                                                         const TAVString& text,
                                                                         const TAVString& level)
    : TAVMessageLiteral(code, text, level) {
  setMessageIdentifier(identifierOf(code, level));
}
QVT_SSXMLA::MessageInstance_String_String::MessageInstance_String_String(
    const MessageInstance_String_String& other) = default;
QVT_SSXMLA::MessageInstance_String_String& QVT_SSXMLA::MessageInstance_String_String::operator=(
    const MessageInstance_String_String& other) = default;
QVT_SSXMLA::MessageInstance_String_String::~MessageInstance_String_String() = default;

TAVString QVT_SSXMLA::MessageInstance_String_String::getMessage(const TAVString& first,
                                                                const TAVString& second) const {
  return messageOf(*this, toString(first, second));
}

TAVString QVT_SSXMLA::MessageInstance_String_String::toString(const TAVString& first,
                                                              const TAVString& second) const {
  initLiterals();
  return createParameterizedText(arrayOf({first, second}));
}

void QVT_SSXMLA::MessageInstance_String_String::log(TAVLog& log, const TAVString& first,
                                                    const TAVString& second) const {
  logText(log, *this, toString(first, second));
}

void QVT_SSXMLA::MessageInstance_String_String::throwException(const TAVString& first,
                                                               const TAVString& second) const {
  throw TAVException(getMessage(first, second), buildStackTrace());
}
