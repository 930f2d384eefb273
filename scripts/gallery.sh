#!/usr/bin/env bash
# Draws the pictures of docs/images anew: those of the gallery, the README and the guide. Look at what
# git shows as changed before committing it. Wants ffmpeg (apt-get install ffmpeg), which only this uses.
set -euo pipefail
cd "$(dirname "$0")/.."

command -v ffmpeg >/dev/null || { echo "gallery.sh wants ffmpeg: apt-get install ffmpeg" >&2; exit 1; }
examples=(compute_points curves layers orbit overlays own_look particles picking shadow shapes text from_c)
pages=(text_on_pictures first_triangle own_shader render_targets particles)
of_data=(first_model models_and_looks cameras pictures_as_data text)
build=$PWD/build/release
data=$PWD/examples/data
images=$PWD/docs/images
render=$build/tools/orvex-render/orvex-render

targets=(orvex-render orvex_view_gallery film guide_first_picture guide_textures_and_materials
         "${examples[@]}")
for page in "${pages[@]}" "${of_data[@]}"; do
  targets+=("guide_$page")
done
cmake --preset release >/dev/null
cmake --build --preset release --target "${targets[@]}"
folder=$(mktemp -d)
trap 'rm -rf "$folder"' EXIT
cp "$data"/* "$folder"

film() { ffmpeg -v error -y "$@"; }

# --- The README: a picture, and a turn around the model, 480 pixels wide

"$render" --quiet --output "$images/lighthouse.jpg" -- "$data/lighthouse.obj"
"$render" --quiet --film 32 --size 960x720 --format y4m --output - -- "$data/lighthouse.obj" |
  film -r 12 -i - -filter_complex \
    "crop=960:600:0:120,scale=480:-1:flags=area,split[a][b];[a]palettegen=max_colors=64[p];[b][p]paletteuse=dither=none:diff_mode=rectangle" \
    "$images/lighthouse_turn.gif"

# --- The examples

"$build/tools/orvex-view/orvex_view_gallery" "$data/lighthouse.obj" "$images/view.jpg"
for example in "${examples[@]}"; do
  (cd "$folder" && "$build"/examples/*_"$example/$example")
  film -i "$folder/$example.jpg" -frames:v 1 -q:v 5 -pix_fmt yuvj420p "$images/$example.jpg"
done
(cd "$folder" && "$build/examples/07_film/film")
film -i "$folder/film.y4m" -frames:v 1 -q:v 3 -vf "select='not(mod(n,5))',tile=4x1,scale=960:-1" "$images/film.jpg"

# --- Every look on three models, on either path: the same, bit for bit

looks=($(basename -s .glsl src/orvex_kit/looks/*.glsl))
models=(lighthouse knot vase)
scripts/gallery_models.py "$folder"
for path in gl2 gl3; do
  cells=0
  for model in "${models[@]}"; do
    for look in "${looks[@]}"; do
      label=()
      [ "$model" = lighthouse ] && label=(--text "$look" --text-place top-left --text-size 36)
      "$render" --quiet --path "$path" --size 512x384 --look "$look" "${label[@]}" \
        --output "$folder/$path-$cells.png" -- "$folder/$model.obj"
      [ "$path" = gl2 ] || cmp "$folder/gl2-$cells.png" "$folder/gl3-$cells.png"
      cells=$((cells + 1))
    done
  done
  film -i "$folder/$path-%d.png" -frames:v 1 -q:v 3 -vf "scale=256:-1:flags=area,tile=${#looks[@]}x${#models[@]}" "$images/looks_$path.jpg"
done

# --- A batch of a hundred

(cd "$folder" && "$render" --quiet --batch hundred.jsonl --size 192x192 --output-dir hundred --results hundred.txt)
film -i "$folder/hundred/%02d.png" -frames:v 1 -q:v 6 -pix_fmt yuvj420p -vf "scale=44:-1:flags=area,tile=20x5" \
  "$images/guide_batch.jpg"

# --- The guide

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
