// KvoErrObject: the library's error record.
//
// Every worker class owns one and keeps in it the last failure of its own
// methods; clients may also create and use one by themselves. The record holds
// the five facts of a failure (number, description, source, help file, help
// context), turns them into one display text, shows it in a message box and
// raises it again as a runtime error.
//
// Number -1 marks a failure found by the library's own checks: GetErrorMsg
// shows such a failure as the bare message, any other number as the
// description followed by "(ERR#: " + number + ")".
//
// None of the members has a handler of its own: a failure inside one (of the
// message box, say) goes to the caller as an AutomationError.
#ifndef VELD_FOUNDATION_KVO_ERR_OBJECT_H_
#define VELD_FOUNDATION_KVO_ERR_OBJECT_H_

#include <cstdint>
#include <string>

#include "veld/export.h"
#include "veld/runtime/automation_error.h"
#include "veld/runtime/variant.h"

namespace veld {

class VELD_EXPORT KvoErrObject {
 public:
  // Number 0, description "", source and help context Empty, help file "".
  KvoErrObject() = default;

  int32_t Number() const { return number_; }
  std::string Description() const { return description_; }
  // A copy of the source field: Empty on a fresh object, Null after Clear.
  Variant Source() const { return source_; }
  // The help file and help context fields.
  std::string HelpFile() const { return help_file_; }
  Variant HelpContext() const { return help_context_; }

  // When a failure is recorded (number not 0), shows GetErrorMsg() in a modal
  // message box with the critical icon and an OK button, under the host's
  // default title. Shows nothing otherwise.
  void ShowError();

  // Copies number, description, help file, help context and source from
  // `cErrObj`, or from the thread's current runtime error when it is null.
  void SetError(const ErrObject* cErrObj = nullptr);

  // Clears the record, then stores the failure. A missing `vHelpContext` is
  // kept as the Missing marker (no help context when raised); a missing
  // `vSource` gives the default source set by SetDefaultErrorInfo.
  void SetError2(int32_t nNumber, const std::string& sMsg, const std::string& sHelpFile = "",
                 const Variant& vHelpContext = Variant::Missing(),
                 const Variant& vSource = Variant::Missing());

  // "" when number is 0; the description alone when number is -1; otherwise
  // the description followed directly by "(ERR#: " + number + ")".
  std::string GetErrorMsg() const;

  // Number 0, description "", source Null, help file "", help context the
  // 32-bit integer 0. The default source is kept.
  void Clear();

  // Returns false when nothing is recorded. Otherwise raises the recorded
  // failure as an AutomationError (and so never returns): number, description,
  // help file and help context of the record, and as source the source text
  // of the thread's current runtime error at this moment. The record stays.
  bool Raise();

  // Stores `DefSource` as the default source. `sErrDescPrefix` is accepted
  // and deliberately dropped: worker classes pass their class names here and
  // recorded descriptions must stay free of them.
  void SetDefaultErrorInfo(const Variant& DefSource, const std::string& sErrDescPrefix = "");

 private:
  int32_t number_ = 0;
  std::string description_;
  Variant source_;
  std::string help_file_;
  Variant help_context_;
  // Never assigned by any member; kept so that the record's layout and the
  // description rule ("prefix + message") stay visible.
  std::string description_prefix_;
  Variant default_source_;
};

}  // namespace veld

#endif  // VELD_FOUNDATION_KVO_ERR_OBJECT_H_
