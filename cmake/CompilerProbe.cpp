// What has kept a compiler from reading the headers of an older system.
#if __has_include(<rapidjson/document.h>)
#include <rapidjson/document.h>
#endif
