#pragma once

/// @file
/// Answers as the importer gives them.

#include <cstddef>
#include <vector>

#include <sys/mman.h>
#include <unistd.h>

#include <gtest/gtest.h>

#include "orvex_formats/import/program/answer_writer.h"
#include "orvex_formats/private/draft.h"

namespace orvex_test {

/// A model of all kinds of parts.
inline orvex::formats::Draft small_draft() {
    using namespace orvex::formats;
    Draft draft;
    draft.notes = {"lights were left out"};
    draft.pictures = {{"picture", {1, 2, 3}}};
    SurfaceMaterial material;
    material.name = "wood";
    material.textures = {"picture"};
    material.physical.emplace().base_color_texture.image = "picture";
    draft.materials = {material, SurfaceMaterial()};
    Surface surface;
    surface.name = "tile";
    surface.positions = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}};
    surface.normals.assign(3, {0, 0, 1});
    surface.colors.assign(3, {1, 0, 0, 1});
    surface.uvs[0].resize(3);
    surface.uvs[0][1].set(1, 0);
    surface.triangles = {{0, 1, 2}};
    surface.triangle_materials = {1};
    draft.surfaces = {surface};
    draft.clouds = {{"dust", {{1, 2, 3}}, {}}};
    draft.cameras = {{"front", {0, 1, 5}, {0, 0, -1}, {0, 1, 0}, 40.0f, 0.0f, 1.5f, 0.1f, 100.0f},
                     {"plan", {0, 9, 0}, {0, -1, 0}, {0, 0, -1}, 0.0f, 4.0f, 2.0f, 0.0f, 20.0f}};
    draft.lines = {{"edge", {{0, 0, 0}, {1, 0, 0}}, {{1, 0, 0, 1}, {0, 1, 0, 1}}}};
    return draft;
}

/// What the program would answer, whether it is right or not.
inline std::vector<unsigned char> answer_with(orvex::formats::Draft draft) {
    using namespace orvex::formats;
    const int file = memfd_create("answer", MFD_CLOEXEC);
    AnswerRoom room(file, 1u << 20);
    write_answer(draft, room);
    room.finish();
    const auto size = static_cast<std::size_t>(lseek(file, 0, SEEK_END));
    std::vector<unsigned char> bytes(size);
    EXPECT_EQ(pread(file, bytes.data(), size, 0), static_cast<ssize_t>(size));
    close(file);
    return bytes;
}

} // namespace orvex_test
