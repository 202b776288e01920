// What the listing modes share: the file, the runtime and the ID around what they list.
#pragma once

#include <functional>

#include "listing/ListingFile.h"

namespace larkspan {

// Opens the listing's file, starts the Notes runtime, switches to the ID file of the settings, runs
// the listing, ends the runtime and closes the file. What fails is logged and leaves out the rest;
// the file keeps what was written. Lets no exception out.
void RunListing(const wchar_t* fileName, const std::function<void(ListingFile&)>& list);

// Tell what ended a listing, or of an exception out of the end of the runtime, before which the
// listing was done, and end the runtime. RunListing does so with the exceptions that it can catch.
// The file keeps what was written.
void EndListingAfterException();
void EndListingAfterCrash();

}  // namespace larkspan
