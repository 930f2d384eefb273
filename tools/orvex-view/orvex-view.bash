# Completion of orvex-view for bash.

_orvex_view() {
  local current before words='' files='' folders=''
  local options='--size --background --statistics --bare --look --wireframe --normals --samples --path
    --layer --azimuth --elevation --up --plugin --loader --help --version --quiet --verbose'
  _orvex_read_line
  case $before in
    --layer) words='color depth normal position object material face' ;;
    *) _orvex_choose "$before" ;;
  esac
  _orvex_offer
}

complete -F _orvex_view orvex-view
