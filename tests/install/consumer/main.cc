// Uses the installed library through its umbrella header only, the way an
// outside program does.
#include <cstdio>
#include <string>

#include <veld/veld.h>

int main() {
  const std::string overflow = veld::ErrorText(6);
  const std::string text = veld::Variant("x").ToString();
  std::printf("ErrorText(6) = %s\nVariant(\"x\").ToString() = %s\n", overflow.c_str(),
              text.c_str());
  if (overflow != "Overflow" || text != "x") {
    std::fprintf(stderr, "unexpected results from the installed library\n");
    return 1;
  }
  return 0;
}
