# Completion of orvex-render for bash.

_orvex_render() {
  local current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
  local colors='black white gray red green blue yellow cyan magenta orange'
  local options='--output --thumbnail --size --background --wireframe --normals --samples --path --azimuth --elevation
    --distance --zoom --up --turntable --text --text-place --text-size --text-color --font --info
    --json --gl --layers --format --look --film --track --ref --tolerance --plugin --loader --time
    --device
    --list-devices
    --batch --files --null --output-dir --results --resume --shard --keep-going --serve --socket
    --workers --recycle --limit-memory --limit-seconds --limit-pixels --limit-file
    --help --version --quiet --verbose'
  local places='top-left top top-right left center-left center center-right right bottom-left
    bottom bottom-right'
  COMPREPLY=()

  # "--name=value" comes as three words.
  if [ "$current" = = ]; then
    current=
  elif [ "$before" = = ]; then
    before=${COMP_WORDS[COMP_CWORD-2]}
  fi

  local words='' files='' folders=''
  case $before in
    -b | --background) words="$colors transparent" ;;
    --text-color) words=$colors ;;
    -l | --look) words='lit matcap normals plain wire' ;;
    --layers) words='color depth normal position object material face' ;;
    --format) words='png jpg npy exr raw y4m' ;;
    --device) words='software 0 1' ;;
    --path) words='gl2 gl3' ;;
    -n | --normals) words='file smooth flat' ;;
    -u | --up) words='auto x y z -x -y -z' ;;
    -m | --samples) words='0 2 4 8' ;;
    --thumbnail) words='128 256 512' ;;
    -s | --size) words='640x480 1280x960 1920x1080' ;;
    --text-place) words=$places ;;
    -o | --output) files='png|jpg|jpeg|JPG|npy|exr|raw|y4m' ;;
    --ref) files='png|jpg|jpeg|JPG|bmp|tga' ;;
    --plugin) files='so' ;;
    --track) files='json' ;;
    --batch | --results) files='json|jsonl|ndjson' ;;
    --files) files='txt|list' ;;
    --output-dir) folders=yes ;;
    --font) files='xml|fnt' ;;
    -a | --azimuth | -e | --elevation | -d | --distance | -z | --zoom | -t | --turntable | \
      -x | --text | --text-size | --film | --tolerance | --loader | --time | --shard | --socket | --workers | \
      --recycle | --limit-*) return ;;
    *) case $current in
         -*) words=$options ;;
         *) files='obj|OBJ|3ds|3DS' ;;
       esac ;;
  esac

  if [ -n "$words" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
    return
  fi
  local path
  compopt -o filenames 2>/dev/null
  while IFS= read -r path; do
    if [ -d "$path" ] || [[ -z $folders && $path =~ \.($files)$ ]]; then
      COMPREPLY+=("$path")
    fi
  done < <(compgen -f -- "$current")
}

complete -F _orvex_render orvex-render
