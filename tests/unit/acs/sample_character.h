// A small character that has everything the file format can hold.
#pragma once

#include "companions/agent/acs/character_file.h"

agent::acs::Character sampleCharacter();
