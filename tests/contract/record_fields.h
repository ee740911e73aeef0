// Fills the fixed text fields of the records that a test hands to the library.

#pragma once

#include <gtest/gtest.h>

#include <cstddef>
#include <cstring>
#include <string>

template <std::size_t size>
void SetField(char (&field)[size], const std::string& text) {
    ASSERT_LT(text.size(), size) << text;
    std::memcpy(field, text.c_str(), text.size() + 1);
}
