// Messages for the user: translations and the error box.
#pragma once

#include <string>

#include "ktscene/export.h"

// Returns the user-interface text in the user's language (LC_MESSAGES, from the gettext catalog
// "ktscene"), or the text itself where there is no translation.
KT_SCENE_API std::u16string ZuTranslateText(const char16_t* text);
// Sets the directory in which catalogs are looked up (de/LC_MESSAGES/ktscene.mo and so on). Null or
// empty: the one that was installed with the library, wherever the tree is now.
KT_SCENE_API void ZuSetCatalogueDirectory(const char* directory);

// Shows an error. `owner` is the owning window, null for none; `style` is 0. Calls the handler that
// the application has set; without one, writes "title: text" and a line feed to standard error.
KT_SCENE_API void ZuErrorBox(void* owner, const char16_t* title, const char16_t* text, int style);

// Shows an error in a host's own way; arguments as in ZuErrorBox, the texts never null.
using ZuErrorBoxHandler = void (*)(void* owner, const char16_t* title, const char16_t* text,
                                   int style);
// Sets the process's handler (null: the default) and returns the previous one. Set it before any
// thread can show an error.
KT_SCENE_API ZuErrorBoxHandler ZuSetErrorBoxHandler(ZuErrorBoxHandler handler);
