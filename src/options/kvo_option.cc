// KvoOption: construction, and whole sections moved between the held
// document and files or XML texts.
#include "veld/options/kvo_option.h"

#include "foundation/frame_settings.h"
#include "foundation/this_utils.h"
#include "options/option_document.h"
#include "options/option_messages.h"
#include "veld/platform/platform.h"
#include "veld/runtime/automation_error.h"
#include "veld/xml/xml_document.h"
#include "xml/xml_file.h"

namespace veld {

namespace oi = options_internal;

namespace {

// Runs a file step whose failure the save sequence ignores. An ignored
// failure is handled here, so the thread's current error is cleared as it is
// when a handled error leaves a procedure.
template <class Step>
bool Quietly(Step&& step) noexcept {
  try {
    step();
    return true;
  } catch (...) {
  }
  try {
    Err().Clear();
  } catch (...) {
  }
  return false;
}

// Runs a step of writing the new file. Its failure is reported as the DOM's
// save reports a failed write, as callers have always seen it.
template <class Step>
auto AsDocumentSave(Step&& step) {
  try {
    return step();
  } catch (const AutomationError& error) {
    xml_internal::FileError save_error =
        xml_internal::DescribeSaveError(error.Number(), error.Description());
    RaiseError(save_error.number, save_error.reason);
  }
}

// An earlier save that stopped between putting the old file aside and
// writing the new one leaves only the ".bak" copy: put it back under the
// file's name, so that a load or save takes it up instead of starting afresh.
void RestoreFromBackup(const std::string& path) {
  const std::string backup = path + ".bak";
  if (FileExists(path) || !FileExists(backup)) return;
  Quietly([&] { CurrentPlatform().RenameFile(backup, path); });
}

}  // namespace

KvoOption::KvoOption() : DocumentFrame(kOptionFrame) {}

KvoOption::~KvoOption() = default;

bool KvoOption::ImportInto(const XmlDocument& source, const std::vector<std::string>& section_ids) {
  XmlNode root = GetRootElement();
  if (!root) return false;
  oi::ImportSections(m_cXmlDom, root, source, section_ids);
  return true;
}

bool KvoOption::LoadOption(const std::string& sOptFile, const std::string& sSectionID) {
  bool result = false;
  // The plural member records its own failures; this frame only catches a
  // failure to build the list.
  Recorded([&] {
    std::vector<std::string> ids{sSectionID};
    result = LoadOptions(sOptFile, ids);
  });
  return result;
}

bool KvoOption::LoadOptions(const std::string& sOptFile, std::vector<std::string>& sSectionID) {
  bool result = false;
  Recorded([&] {
    if (sOptFile.empty()) Fail(oi::kNoSourceOptionFile);
    RestoreFromBackup(sOptFile);
    if (!FileExists(sOptFile)) Fail(oi::kOptionFileNotFound + sOptFile + ".");
    XmlDocument source;
    if (!source.Load(sOptFile)) Fail(oi::kOptionFileNotXml);
    result = ImportInto(source, sSectionID);
  });
  return result;
}

bool KvoOption::LoadOptionFromXml(const std::string& sXml, const std::string& sSectionID) {
  bool result = false;
  // The plural member records its own failures; this frame only catches a
  // failure to build the list.
  Recorded([&] {
    std::vector<std::string> ids{sSectionID};
    result = LoadOptionsFromXml(sXml, ids);
  });
  return result;
}

bool KvoOption::LoadOptionsFromXml(const std::string& sXml, std::vector<std::string>& sSectionID) {
  bool result = false;
  Recorded([&] {
    if (sXml.empty()) Fail(oi::kNoOptionXml);
    XmlDocument source;
    if (!source.LoadXml(sXml)) Fail(oi::kOptionDataNotXml);
    result = ImportInto(source, sSectionID);
  });
  return result;
}

bool KvoOption::SaveOption(const std::string& sOptFile, const std::string& sSectionID) {
  bool result = false;
  // The plural member records its own failures; this frame only catches a
  // failure to build the list.
  Recorded([&] {
    std::vector<std::string> ids{sSectionID};
    result = SaveOptions(sOptFile, ids);
  });
  return result;
}

bool KvoOption::SaveOptions(const std::string& sOptFile, std::vector<std::string>& sSectionID) {
  bool result = false;
  Recorded([&] {
    if (sOptFile.empty()) Fail(oi::kNoTargetOptionFile);
    const std::string text = oi::ExportSections(m_cXmlDom, sSectionID).Xml();
    // Text that would not load again (characters XML cannot hold) must never
    // replace a file that loads.
    if (!XmlDocument().LoadXml(text)) Fail(oi::kOptionsNotRepresentable);
    Platform& platform = CurrentPlatform();
    // A link to the option file is written through: its target is replaced.
    const std::string path = platform.FinalPath(sOptFile);
    if (platform.IsReadOnlyFile(path)) RaiseError(errnum::kPermissionDenied);
    RestoreFromBackup(path);
    const std::string backup = path + ".bak";
    // The new content is on disk under a name of its own before anything of
    // the old file is touched; the rename then swaps it in whole. The ".bak"
    // name is a second name of the old file while that happens.
    const std::string written =
        AsDocumentSave([&] { return platform.WriteFileBeside(path, text); });
    try {
      if (FileExists(path)) {
        Quietly([&] { platform.RemoveFile(backup); });
        Quietly([&] { platform.LinkFile(path, backup); });
      }
      AsDocumentSave([&] { platform.RenameFile(written, path); });
    } catch (...) {
      Quietly([&] { platform.RemoveFile(written); });
      throw;
    }
    result = true;
    Quietly([&] { platform.RemoveFile(backup); });
  });
  return result;
}

bool KvoOption::SaveOptionToXml(std::string& sXml, const std::string& sSectionID) {
  bool result = false;
  // The plural member records its own failures; this frame only catches a
  // failure to build the list.
  Recorded([&] {
    std::vector<std::string> ids{sSectionID};
    result = SaveOptionsToXml(sXml, ids);
  });
  return result;
}

bool KvoOption::SaveOptionsToXml(std::string& sXml, std::vector<std::string>& sSectionID) {
  bool result = false;
  Recorded([&] {
    sXml.clear();
    XmlDocument exported = oi::ExportSections(m_cXmlDom, sSectionID);
    sXml = exported.Xml();
    result = true;
  });
  return result;
}

std::string KvoOption::GenerateGUID(KvoGuidFormatEnum eFormat) { return NewGuidText(eFormat); }

}  // namespace veld
