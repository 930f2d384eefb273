#!/usr/bin/env bash
# Draws the pictures of docs/images anew: those of the gallery, the README and the guide. Look at what
# git shows as changed before committing it.
set -euo pipefail
cd "$(dirname "$0")/.."

examples=(compute_points curves offscreen overlays particles picking shadow)
pages=(text_on_pictures first_triangle own_shader render_targets particles)
build=build/release
data=examples/data
images=docs/images

of_data=(first_model models_and_looks cameras pictures_as_data text)
targets=(orvex-render orvex_view_gallery guide_first_picture guide_textures_and_materials shapes "${examples[@]}")
for page in "${pages[@]}" "${of_data[@]}"; do
  targets+=("guide_$page")
done
cmake --preset release >/dev/null
cmake --build --preset release --target "${targets[@]}"

"$build/tools/orvex-render/orvex-render" --size 1280x960 --samples 4 \
  --output "$images/lighthouse.jpg" -- "$data/lighthouse.obj"
"$build/tools/orvex-view/orvex_view_gallery" "$data/lighthouse.obj" "$images/view.jpg"
# On the path of OpenGL 2, which draws raster text too.
for example in "${examples[@]}"; do
  "$build"/examples/*"$example/$example" gl2 "$images/$example.jpg"
done
"$build/examples/09_shapes/shapes" gl2 "$images/shapes.jpg" "$images/shapes_quads.jpg"
for page in "${pages[@]}"; do
  "$build/docs/guide/guide_$page" "$images/guide_$page.jpg"
done
for page in "${of_data[@]}"; do
  "$build/docs/guide/guide_$page" "$data/" "$images/guide_$page.jpg"
done
"$build/docs/guide/guide_first_picture" "$data/lighthouse.obj" "$images/guide_first_picture.jpg"
"$build/docs/guide/guide_textures_and_materials" "$data/lighthouse_stone.png" \
  "$images/guide_textures_and_materials.jpg"
git status --short "$images"
