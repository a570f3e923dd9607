// KvoOption: construction, and whole sections moved between the held
// document and files or XML texts.
#include "veld/options/kvo_option.h"

#include "foundation/frame_settings.h"
#include "foundation/this_utils.h"
#include "options/option_document.h"
#include "options/option_messages.h"
#include "veld/platform/platform.h"

namespace veld {

namespace oi = options_internal;

namespace {

// Runs a file step whose failure the save sequence ignores. The thread's
// current runtime error is left as it was, so an ignored failure does not
// show up later as the source of a raised record.
template <class Step>
bool Quietly(Step&& step) noexcept {
  ErrorInfo before;
  try {
    before = Err().Info();
  } catch (...) {
    return false;
  }
  bool done = false;
  try {
    step();
    done = true;
  } catch (...) {
  }
  try {
    Err().Set(before);
  } catch (...) {
  }
  return done;
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
  bool writing = false;
  bool backup_made = false;
  std::string backup;
  Recorded([&] {
    if (sOptFile.empty()) Fail(oi::kNoTargetOptionFile);
    backup = sOptFile + ".bak";
    XmlDocument exported = oi::ExportSections(m_cXmlDom, sSectionID);
    Platform& platform = CurrentPlatform();
    if (FileExists(sOptFile)) {
      backup_made = Quietly([&] { platform.FileCopy(sOptFile, backup); });
      // The old file goes even when no backup could be made: the sequence is
      // kept as callers have always seen it.
      Quietly([&] { platform.RemoveFile(sOptFile); });
    }
    writing = true;
    exported.Save(sOptFile);
    result = true;
    Quietly([&] { platform.RemoveFile(backup); });
  });
  // A failed write: the record is made; put the old file back from its copy,
  // which stays on disk.
  if (!result && writing && backup_made) {
    Quietly([&] { CurrentPlatform().FileCopy(backup, sOptFile); });
  }
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
