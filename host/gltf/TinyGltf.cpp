// The one source that holds the code of tinygltf.
#include <fstream>

#define TINYGLTF_IMPLEMENTATION
#include "TinyGltf.h"
