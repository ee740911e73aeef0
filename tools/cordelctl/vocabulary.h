// The containers of the documents and the attributes of their rows, as far as the library knows them.

#pragma once

#include <array>
#include <span>
#include <string_view>

struct Container {
    std::string_view name;
    std::span<const std::string_view> attributes; // every row carries all of these
};

/// Null for a container that the library does not know.
const Container* FindContainer(std::string_view name) noexcept;

/// The settings that ReadPCLFilter reads, in its order.
extern const std::array<std::string_view, 28> kPclSettings;
