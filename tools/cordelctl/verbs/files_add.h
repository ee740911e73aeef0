// files add.

#pragma once

#include "verb.h"

#include <vector>

std::vector<Verb> FilesAddVerbs();
