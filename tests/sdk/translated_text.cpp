// Prints a text of the library in the user's language.
#include <ktscene/zu_message.h>
#include <platform/path_text.h>

#include <clocale>
#include <cstdio>

int main() {
  std::setlocale(LC_MESSAGES, "");
  std::puts(pathToBytes(ZuTranslateText(u"DXF export error")).c_str());
}
