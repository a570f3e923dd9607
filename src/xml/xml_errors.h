// Collecting the messages of libxml2 and libxslt instead of letting them go
// to stderr, and raising them as the library's errors.
#ifndef VELD_XML_XML_ERRORS_H_
#define VELD_XML_XML_ERRORS_H_

#include <string>

#include <libxml/xmlerror.h>

namespace veld::xml_internal {

// The first error worth reporting of an operation.
struct ErrorDetail {
  int code = 0;
  int line = 0;
  int column = 0;
  std::string message;
};

// Gathers errors. Used as the user data of parser, XPath and transform
// contexts, and, through ScopedErrorCapture, for the thread-wide handlers.
class ErrorCollector {
 public:
  // Keeps the first error (warnings only when no error comes).
  void Add(const xmlError* error);
  // Keeps free text, as the generic handlers deliver it in pieces.
  void AddText(const std::string& text);

  bool HasError() const { return has_error_; }
  const ErrorDetail& First() const { return first_; }
  // The most useful message: the first error's, else the first line of free
  // text that is not a location preamble, else the first warning's; "" when
  // nothing came.
  std::string Message() const;

  // Handlers to hand to the XML libraries, with the collector as context.
  static void StructuredHandler(void* collector, xmlErrorPtr error);
  static void GenericHandler(void* collector, const char* format, ...);

 private:
  bool has_error_ = false;
  ErrorDetail first_;
  std::string first_warning_;
  std::string text_;
};

// Routes libxml2's thread-wide error handlers (structured and generic) to a
// collector for the lifetime of the scope and puts the previous handlers
// back afterwards, so that nothing reaches stderr and a host's own handlers
// survive.
class ScopedErrorCapture {
 public:
  explicit ScopedErrorCapture(ErrorCollector& collector);
  ~ScopedErrorCapture();
  ScopedErrorCapture(const ScopedErrorCapture&) = delete;
  ScopedErrorCapture& operator=(const ScopedErrorCapture&) = delete;

 private:
  xmlStructuredErrorFunc previous_structured_;
  void* previous_structured_context_;
  xmlGenericErrorFunc previous_generic_;
  void* previous_generic_context_;
};

// Drops trailing line breaks and blanks.
std::string TrimMessage(std::string message);

// Raises errnum::kXmlFailure with `message`, or with `fallback` when the
// message is empty.
[[noreturn]] void RaiseXmlFailure(const std::string& message, const char* fallback = nullptr);

}  // namespace veld::xml_internal

#endif  // VELD_XML_XML_ERRORS_H_
