# What the completions of the tools share: it is installed in front of each.

# Sets what stands at the cursor, and the word before it: "--name=value" comes as three words.
_orvex_read_line() {
  current=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD-1]}
  if [ "$current" = = ]; then
    current=
  elif [ "$before" = = ]; then
    before=${COMP_WORDS[COMP_CWORD-2]}
  fi
}

# Sets the words and the suffixes of files that an option of both takes, or what neither knows: a model.
_orvex_choose() {
  case $1 in
    -b | --background) words='black white gray red green blue yellow cyan magenta orange' ;;
    -l | --look) words='lit matcap normals plain wire' files='glsl' ;;
    --path) words='gl2 gl3' ;;
    -n | --normals) words='file smooth flat' ;;
    -u | --up) words='auto x y z -x -y -z' ;;
    -m | --samples) words='0 2 4 8' ;;
    -s | --size) words='640x480 1280x960 1920x1080' ;;
    --plugin) files='so' ;;
    -a | --azimuth | -e | --elevation | --loader) ;;
    *) case $current in
         -*) words=$options ;;
         *) files='3ds|3mf|dae|fbx|glb|gltf|obj|off|ply|stl' ;;
       esac ;;
  esac
}

# Offers what was chosen. Suffixes count in any case.
_orvex_offer() {
  local path
  COMPREPLY=()
  if [ -n "$words" ]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
  if [ -z "$files$folders" ]; then
    return
  fi
  compopt -o filenames 2>/dev/null
  while IFS= read -r path; do
    if [ -d "$path" ] || [[ -n $files && ${path,,} =~ \.($files)$ ]]; then
      COMPREPLY+=("$path")
    fi
  done < <(compgen -f -- "$current")
}
