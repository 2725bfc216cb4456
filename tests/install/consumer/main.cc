#include <cstdio>

#include "ovui_qt.h"

// Linked against ovui::ovui: the Qt layer is there, and loading it registered
// the standard dialog handlers.
int main() {
  std::printf("tr:%s confirm-handler:%d\n", vm::Translator::Tr("Cancel", "ctx").c_str(),
              vm::Navigator::HasHandler("confirm"));
  return 0;
}
