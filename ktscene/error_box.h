// How an error is shown where the application has no handler. Internal to this library.
#pragma once

namespace dxf2d {

// A line on standard error, "title: text"; on Windows, in a program without standard error, a
// message box over `owner`. Neither text is null.
void showErrorBox(void* owner, const char16_t* title, const char16_t* text, int style);

}  // namespace dxf2d
