// Messages of the maker's libraries: translations and the error box.
#pragma once

#include <string>

#include "ktscene/export.h"

// The user-interface text in the user's language (LC_MESSAGES, from the gettext catalogue
// "ktscene"), the text itself where there is no translation.
KT_SCENE_API std::u16string ZuTranslateText(const char16_t* text);
// Where catalogues are looked for, a directory with de/LC_MESSAGES/ktscene.mo and so on, in place
// of the installed one. Null or empty: the installed one.
KT_SCENE_API void ZuSetCatalogueDirectory(const char* directory);

// Shows an error. `owner` is the owning window, null for none; `style` is 0. Calls the handler that
// the application has set; without one, writes "title: text" and a line feed to standard error.
KT_SCENE_API void ZuErrorBox(void* owner, const char16_t* title, const char16_t* text, int style);

using ZuErrorBoxHandler = void (*)(void* owner, const char16_t* title, const char16_t* text,
                                   int style);
// Sets the handler, null for the default; returns the one before. One for the process; set it
// before any thread can show an error.
KT_SCENE_API ZuErrorBoxHandler ZuSetErrorBoxHandler(ZuErrorBoxHandler handler);
