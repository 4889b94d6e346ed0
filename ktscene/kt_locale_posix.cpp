#include <langinfo.h>
#include <locale.h>

#include <cstring>
#include <new>

#include "ktscene/kt_locale.h"

KtNumericLocale::KtNumericLocale() {
  if (std::strcmp(nl_langinfo(RADIXCHAR), ".") == 0) {
    return;
  }
  locale_t before = uselocale(nullptr);
  locale_t copy = duplocale(before);
  locale_t own = copy == nullptr ? nullptr : newlocale(LC_NUMERIC_MASK, "C", copy);
  if (own == nullptr) {
    if (copy != nullptr) {
      freelocale(copy);
    }
    throw std::bad_alloc();
  }
  uselocale(own);
  before_ = before;
  own_ = own;
}

KtNumericLocale::~KtNumericLocale() {
  if (own_ != nullptr) {
    uselocale(static_cast<locale_t>(before_));
    freelocale(static_cast<locale_t>(own_));
  }
}
