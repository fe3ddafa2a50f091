#pragma once

// The texts that the plug-in shows: its option, its description, its progress, warnings and failures. The
// code that has something to say names a literal and gives the arguments.

#include "framework/api.h"
#include "framework/modelbridge/bridge_option_literal.h"
#include "framework/std/literal.h"
#include "framework/std/log.h"

/// The catalogue of all texts. It is made when a text is first asked for; the literals themselves are made
/// when the plug-in is loaded.
class TAV_API QVT_SSXMLA : public TAVTextLiteralsCollection {
 public:
  /// A text without a level. What toString gives may have been replaced by another language's text.
  class TAV_API TextInstance : public TAVParameterizedTextLiteral {
   public:
    TextInstance(const TAVString& key, const TAVString& text);
    TextInstance(const TextInstance& other);
    TextInstance& operator=(const TextInstance& other);
    ~TextInstance() override;

    [[nodiscard]] TAVString toString() const;
  };

  /// An option; see TAVBridgeOptionLiteral.
  class TAV_API ParameterInstance : public TAVBridgeOptionLiteral {
   public:
    ParameterInstance(const TAVString& key, const TAVString& name, OptionType type,
                      const TAVString& description, const TAVBridgeOptionEnumerationLiteral* enumeration,
                      const TAVTextLiteral* defaultValue);
    ParameterInstance(const ParameterInstance& other);
    ParameterInstance& operator=(const ParameterInstance& other);
    ~ParameterInstance() override;

   protected:
    void initParameter() override;
  };

  /// A message without arguments. Its identifier is made of the catalogue's name, the first letter of the
  /// level and the code in four digits: QVT_SSXMLA_S0010.
  class TAV_API MessageInstance : public TAVMessageLiteral {
   public:
    MessageInstance(const TAVString& code, const TAVString& text, const TAVString& level);
    MessageInstance(const MessageInstance& other);
    MessageInstance& operator=(const MessageInstance& other);
    ~MessageInstance() override;

    /// "[identifier] text"
    [[nodiscard]] TAVString getMessage() const;
    /// The text alone.
    [[nodiscard]] TAVString toString() const;
    /// Logs the text, with the identifier beside it.
    void log(TAVLog& log) const;
    /// Throws a TAVException with getMessage().
    [[noreturn]] void throwException() const;
  };

  /// A message with one argument, which stands in for {0}.
  class TAV_API MessageInstance_String : public TAVMessageLiteral {
   public:
    MessageInstance_String(const TAVString& code, const TAVString& text, const TAVString& level);
    MessageInstance_String(const MessageInstance_String& other);
    MessageInstance_String& operator=(const MessageInstance_String& other);
    ~MessageInstance_String() override;

    [[nodiscard]] TAVString getMessage(const TAVString& argument) const;
    [[nodiscard]] TAVString toString(const TAVString& argument) const;
    void log(TAVLog& log, const TAVString& argument) const;
    [[noreturn]] void throwException(const TAVString& argument) const;
  };

  /// A message with two arguments, which stand in for {0} and {1}.
  class TAV_API MessageInstance_String_String : public TAVMessageLiteral {
   public:
    MessageInstance_String_String(const TAVString& code, const TAVString& text, const TAVString& level);
    MessageInstance_String_String(const MessageInstance_String_String& other);
    MessageInstance_String_String& operator=(const MessageInstance_String_String& other);
    ~MessageInstance_String_String() override;

    [[nodiscard]] TAVString getMessage(const TAVString& first, const TAVString& second) const;
    [[nodiscard]] TAVString toString(const TAVString& first, const TAVString& second) const;
    void log(TAVLog& log, const TAVString& first, const TAVString& second) const;
    [[noreturn]] void throwException(const TAVString& first, const TAVString& second) const;
  };

  static TextInstance BRIDGE_SPEC_MICROSOFTSQLSERVERXMLA_IMPORT_DESCRIPTION;
  static TextInstance BP_FILE_DEFAULT;
  static ParameterInstance BP_FILE;
  static MessageInstance_String MICROSOFT_XMLA_I_FILE_NOT_OPEN;                 ///< the file's path
  static MessageInstance_String_String MICROSOFT_XMLA_I_COULD_NOT_FIND_OBJECT;  ///< ID, expected type
  static MessageInstance_String MICROSOFT_XMLA_I_IMPORT_MODEL;                  ///< the model's name
  static MessageInstance MICROSOFT_XMLA_I_IMPORT_DIMENSIONS;
  static MessageInstance_String MICROSOFT_XMLA_I_IMPORT_DIMENSION;  ///< the dimension's name
  static MessageInstance MICROSOFT_XMLA_I_IMPORT_CUBES;
  static MessageInstance_String MICROSOFT_XMLA_I_IMPORT_CUBE;  ///< the cube's name
  static MessageInstance MICROSOFT_XMLA_I_IMPORT_DSVS;
  static MessageInstance_String_String MICROSOFT_XMLA_FEATURE_NOTFOUND;    ///< feature, path of what names it
  static MessageInstance_String_String MICROSOFT_XMLA_STATEMENT_NOT_READ;  ///< cube, place and what is wrong
  static MessageInstance_String_String MICROSOFT_XMLA_NO_SUCH_MEASURE;     ///< measure, path of its cube

  ~QVT_SSXMLA() override;

  /// The literal with this key, or null.
  static const TAVTextLiteral* findTextLiteral(const TAVString& key);
  /// Appends every literal, as TAVTextLiteral*.
  static void getAllLiterals(TAVVector& literals);

 private:
  QVT_SSXMLA();
  static QVT_SSXMLA& initLiterals();
};
