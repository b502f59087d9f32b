#pragma once

#include <map>
#include <string>

#include <CoreFoundation/CoreFoundation.h>

// A small stand-in for Core Foundation and the frameworks above it. It counts references, so that the code
// for macOS runs on Linux and the address sanitizer finds a reference that is released twice. Null where the
// framework would crash ends the test.
namespace tarnik::countedObjects {

// Every object of the stand-in. Ends with its last reference.
struct Object {
    CFTypeID type = 0;
    std::string text = {};                         // of a string, and the path of a URL or of a bundle's code
    std::map<std::string, CFTypeRef> values = {};  // of a dictionary, by the text of the key
    int references = 1;
};

// Returns the number of references that are held by the program and by objects.
int references();

// Returns an object that the caller owns.
const void* make(Object object);

// Stores text that isn't owned by the program, as `defaults write` does.
void setPreference(const std::string& key, const char* text);

}  // namespace tarnik::countedObjects
