# Completion of orvex-render for bash.

_orvex_render() {
  local current before words='' files='' folders=''
  local options='--output --thumbnail --size --background --wireframe --normals --samples --path --azimuth --elevation
    --distance --zoom --up --turntable --text --text-place --text-size --text-color --font --info
    --json --gl --layers --format --look --film --track --ref --tolerance --plugin --loader --time
    --device
    --list-devices
    --batch --files --null --output-dir --results --resume --shard --keep-going --serve --socket
    --workers --recycle --limit-memory --limit-seconds --limit-pixels --limit-file
    --help --version --quiet --verbose'
  _orvex_read_line
  case $before in
    -b | --background) _orvex_choose -b; words+=' transparent' ;;
    --text-color) _orvex_choose -b ;;
    --layers) words='color depth normal position object material face' ;;
    --format) words='png jpg npy exr raw y4m' ;;
    --device) words='software 0 1' ;;
    --thumbnail) words='128 256 512' ;;
    --text-place) words='top-left top top-right left center-left center center-right right bottom-left bottom
      bottom-right' ;;
    -o | --output) files='png|jpg|jpeg|npy|exr|raw|y4m' ;;
    --ref) files='png|jpg|jpeg|bmp|tga' ;;
    --track) files='json' ;;
    --batch | --results) files='json|jsonl|ndjson' ;;
    --files) files='txt|list' ;;
    --output-dir) folders=yes ;;
    --font) files='xml|fnt' ;;
    -d | --distance | -z | --zoom | -t | --turntable | -x | --text | --text-size | --film | --tolerance | \
      --time | --shard | --socket | --workers | --recycle | --limit-*) ;;
    *) _orvex_choose "$before" ;;
  esac
  _orvex_offer
}

complete -F _orvex_render orvex-render
