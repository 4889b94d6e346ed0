// Pages of memory that can be made unreadable.
#pragma once

#include <cstddef>

namespace dxf2d {

// In bytes.
std::size_t pageSize();

// So many pages, none of which can be read, for good. Throws std::bad_alloc.
void* reservePages(std::size_t count);

// Lets one be read and written; it keeps what it holds.
void openPage(void* page);
// Whoever reads it afterwards crashes.
void closePage(void* page);

}  // namespace dxf2d
