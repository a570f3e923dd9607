// Conversion between UTF-8 and the single-byte "ANSI" code page of the
// current platform (veld::CurrentPlatform().AnsiCodePage(), "windows-1252"
// unless a platform says otherwise), as the classic runtime does when it
// hands strings to byte-oriented system calls.
#ifndef VELD_RUNTIME_CODE_PAGE_H_
#define VELD_RUNTIME_CODE_PAGE_H_

#include <string>
#include <string_view>

namespace veld {

// UTF-8 text to bytes in the ANSI code page. A character the code page cannot
// encode becomes one "?" (no best-fit replacement: "Ā" gives "?", not "A"),
// and so does each ill-formed UTF-8 sequence. Raises 5 with the description
// `Unknown code page "<name>"` when the platform names a code page that ICU
// does not know.
std::string ToAnsiBytes(std::string_view utf8);

// Bytes in the ANSI code page to UTF-8 text. Every byte the code page leaves
// undefined decodes as ICU's table has it (windows-1252 0x81, 0x8D, 0x8F,
// 0x90 and 0x9D give U+0081 and so on, as on Windows). Raises as ToAnsiBytes.
std::string FromAnsiBytes(std::string_view bytes);

}  // namespace veld

#endif  // VELD_RUNTIME_CODE_PAGE_H_
