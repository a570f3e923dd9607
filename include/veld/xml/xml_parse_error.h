// XmlParseError: why the last Load or LoadXml of a document failed.
//
// After a successful load every field is zero or empty. After a failed one
// ErrorCode is non-zero and Reason says what went wrong: the XML parser's own
// message for malformed text, or the file system's reason when the file
// could not be read.
#ifndef VELD_XML_XML_PARSE_ERROR_H_
#define VELD_XML_XML_PARSE_ERROR_H_

#include <cstdint>
#include <string>

#include "veld/export.h"

namespace veld {

class VELD_EXPORT XmlParseError {
 public:
  // No error.
  XmlParseError() = default;
  XmlParseError(int32_t error_code, std::string reason, int32_t line = 0, int32_t line_pos = 0,
                std::string src_text = "", std::string url = "", int32_t parser_code = 0);

  // 0 after a successful load. errnum::kXmlFailure for malformed text;
  // errnum::kXmlPathNotFound, errnum::kXmlAccessDenied or -2147024894 (file
  // not found) when a file could not be read.
  int32_t ErrorCode() const { return error_code_; }
  // The reason in words, without a trailing line break.
  const std::string& Reason() const { return reason_; }
  // 1-based line and column of the error in the text; 0 when unknown.
  int32_t Line() const { return line_; }
  int32_t LinePos() const { return line_pos_; }
  // The line of text the error is on (at most 1024 bytes of it).
  const std::string& SrcText() const { return src_text_; }
  // The file that was loaded; "" for LoadXml.
  const std::string& Url() const { return url_; }
  // The XML parser's own error number (0 for file errors).
  int32_t ParserCode() const { return parser_code_; }

 private:
  int32_t error_code_ = 0;
  std::string reason_;
  int32_t line_ = 0;
  int32_t line_pos_ = 0;
  std::string src_text_;
  std::string url_;
  int32_t parser_code_ = 0;
};

}  // namespace veld

#endif  // VELD_XML_XML_PARSE_ERROR_H_
