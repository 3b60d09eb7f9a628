// tinygltf with the settings that every source must see alike. Images and files are not its business here.
#pragma once

#define TINYGLTF_NO_STB_IMAGE
#define TINYGLTF_NO_STB_IMAGE_WRITE
#define TINYGLTF_NO_FS
#include <tiny_gltf.h>
