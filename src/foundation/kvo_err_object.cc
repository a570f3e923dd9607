#include "veld/foundation/kvo_err_object.h"

#include "veld/platform/platform.h"

namespace veld {

void KvoErrObject::ShowError() {
  if (number_ == 0) return;
  CurrentPlatform().ShowMessageBox(GetErrorMsg(), kMsgBoxCritical | kMsgBoxOkOnly, "");
}

void KvoErrObject::SetError(const ErrObject* cErrObj) {
  const ErrObject& from = cErrObj != nullptr ? *cErrObj : Err();
  // Read in the record's order: number, description, help file, help context,
  // source. The source is always passed, so the default source is not used.
  int32_t number = from.Number();
  std::string description = from.Description();
  std::string help_file = from.HelpFile();
  int32_t help_context = from.HelpContext();
  std::string source = from.Source();
  SetError2(number, description, help_file, Variant(help_context), Variant(source));
}

void KvoErrObject::SetError2(int32_t nNumber, const std::string& sMsg, const std::string& sHelpFile,
                             const Variant& vHelpContext, const Variant& vSource) {
  Clear();
  number_ = nNumber;
  description_ = description_prefix_ + sMsg;
  help_context_ = vHelpContext;
  help_file_ = sHelpFile;
  source_ = vSource.IsMissing() ? default_source_ : vSource;
}

std::string KvoErrObject::GetErrorMsg() const {
  if (number_ == 0) return "";
  if (number_ == errnum::kCheckFailed) return description_;
  return description_ + "(ERR#: " + std::to_string(number_) + ")";
}

void KvoErrObject::Clear() {
  number_ = 0;
  description_.clear();
  source_ = Variant::Null();
  help_file_.clear();
  help_context_ = Variant(int32_t{0});
}

bool KvoErrObject::Raise() {
  if (number_ == 0) return false;
  // A missing help context means "none".
  int32_t help_context =
      help_context_.IsMissing() || help_context_.IsEmpty() ? 0 : help_context_.ToLong();
  // The source is deliberately the current runtime error's, not the stored one.
  std::string source = Err().Source();
  RaiseError(ErrorInfo{number_, description_, source, help_file_, help_context});
}

void KvoErrObject::SetDefaultErrorInfo(const Variant& DefSource,
                                       const std::string& sErrDescPrefix) {
  (void)sErrDescPrefix;
  default_source_ = DefSource;
}

}  // namespace veld
