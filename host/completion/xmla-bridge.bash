# Completion of xmla-bridge for bash.
_xmla_bridge() {
  local commands='import export trace impact coverage unused diff report test describe help'
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    if [[ " $commands " == *" ${COMP_WORDS[i]} "* ]]; then
      command=${COMP_WORDS[i]}
      break
    fi
  done

  local words=''
  case $before in
    --format)
      case $command in
        export) words='json openlineage csv sqlite dot mermaid' ;;
        trace | impact) words='text json dot' ;;
        coverage) words='text json' ;;
        unused) words='text json csv markdown' ;;
        diff) words='text json markdown' ;;
      esac
      ;;
    --kind) words='tables columns dimensions attributes measures members sets expressions functions' ;;
    --fail-on) words='broken lost-lineage changed added removed renamed moved reordered' ;;
    --log-format) words='text json' ;;
    -o | --output | --out-dir | --jobs) ;;
    *)
      case $command in
        '') words="$commands --help --version" ;;
        help) words=${commands% help} ;;
        import) words='-o --out-dir --jobs --json --no-details --quiet --log-format --help' ;;
        export)
          words='-o --format --from --to --openlineage-static --server --post --post-timeout --post-attempts'
          words+=' --quiet --log-format --help'
          ;;
        trace | impact) words='-o --format --depth --values --quiet --log-format --help' ;;
        coverage) words='-o --format --fail-under --quiet --log-format --help' ;;
        unused) words='-o --format --kind --quiet --log-format --help' ;;
        diff) words='-o --format --exit-code --fail-on --quiet --log-format --help' ;;
        report) words='-o --quiet --log-format --help' ;;
        test) words='--quiet --log-format --help' ;;
        describe) words='--json --quiet --log-format --help' ;;
      esac
      # After a command, options are offered only when asked for: its first argument is a file.
      if [[ -n $command && $command != help && $word != -* ]]; then words=''; fi
      ;;
  esac

  if [[ -n $words ]]; then
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$word")
  else
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$word")
  fi
}
complete -F _xmla_bridge xmla-bridge
