#pragma once

// VDGenericConfigFileParser: a keyword-driven reader of line-oriented "KEY value" text
// files, and two static operations that look up or rewrite one "KEY = value" line.
//
// Keywords are matched case-insensitively as prefixes of a line, newest keyword first:
// a keyword that is a prefix of another must be added before it.

#include "foundation/export.h"
#include "foundation/vd_string.h"

// One keyword and its handler, linked into the parser's list.
class NEQBRIDGE_API VDGenericConfigFileToken {
  public:
    // Receives the value text and the context handed to parseFile.
    using Handler = void (*)(const char* value, void* context);

    VDGenericConfigFileToken(const char* keyword, Handler handler,
                             VDGenericConfigFileToken* next = nullptr)
        : m_keyword(keyword), m_handler(handler), m_next(next) {}

    // Tries this keyword on one trimmed line; true when it matched, whether or not the
    // handler was called (a keyword followed only by separators is consumed silently).
    bool parseLine(const char* line, void* context) const;

    VDString m_keyword;
    Handler m_handler;
    VDGenericConfigFileToken* m_next;
};

class NEQBRIDGE_API VDGenericConfigFileParser {
  public:
    VDGenericConfigFileParser() = default;
    VDGenericConfigFileParser(const VDGenericConfigFileParser& other);
    VDGenericConfigFileParser& operator=(const VDGenericConfigFileParser& other);
    ~VDGenericConfigFileParser();

    // Pushes a keyword at the head of the list: it is tried before every earlier one.
    void addToken(const char* keyword, VDGenericConfigFileToken::Handler handler);
    const VDGenericConfigFileToken* getTokens() const { return m_tokens; }

    // Dispatches every terminated line of the file to the first keyword that takes it,
    // passing context to the handlers. A last line without a line terminator is never
    // dispatched. True when the file was opened and was not empty.
    bool parseFile(const char* path, void* context) const;

    // The first "\n" or "\r"; null when the text ends first or text is null.
    static char* findEndOfLine(char* text);
    // The start of the next line, past the run of "\n"/"\r"; null at the end of the text.
    static char* findNextLine(char* text);

    // Splits the line [begin, end) at its first "=": the key with blanks trimmed, the
    // value with leading blanks skipped (empty without "="). False, key and value
    // untouched, when the key is empty.
    static bool parseALine(const char* begin, const char* end, VDString& key, VDString& value);

    // The value without one pair of enclosing double quotes.
    static VDString paramToString(const char* value);
    // False for "No", "0", "False", "#f" (any case); true for anything else.
    static bool paramToBool(const char* value);
    // 0 for "No", "0", "False", "#f"; 1 for "Yes", "1", "True", "#t" (any case); -1 else.
    static int paramToBoolOrDefault(const char* value);
    // sscanf "%f"; 0 when the text holds no number.
    static float paramToFloat(const char* value);
    // paramToFloat truncated toward zero (2.9 gives 2), clamped to the int range.
    static int paramToInt(const char* value);

    // The value of the first "KEY = value" line whose key equals token ignoring case,
    // without enclosing double quotes; empty when there is none. found, when given,
    // tells whether a line matched.
    static VDString findTokenInConfigFile(const VDString& path, const VDString& token, bool* found);
    // Rewrites the file with "TOKEN = value" as its first line and every earlier line of
    // that key left out (found tells whether there was one). The value is written as
    // given. The file is replaced through a temporary file in its folder, so a failure
    // leaves it as it was. False when it could not be written.
    static bool replaceTokenInConfigFile(const VDString& path, const VDString& token,
                                         const VDString& value, bool* found);

  private:
    void freeTokens();
    VDGenericConfigFileToken* m_tokens = nullptr;
};
