# Completion of xmla-bridge for bash.

# Sets plain to what the shell makes of a word, whose last quote may be open.
_xmla_bridge_unquote() {
  local word=$1 quote='' i
  plain=''
  for ((i = 0; i < ${#word}; ++i)); do
    case $quote${word:i:1} in
      \\ | '"\') plain+=${word:$((++i)):1} ;;
      "''" | '""') quote='' ;;
      \' | \") quote=${word:i:1} ;;
      *) plain+=${word:i:1} ;;
    esac
  done
  # Only the shell knows the home folder.
  [[ $word != '~/'* ]] || plain=$HOME${plain#'~'}
}

# Sets input to the first argument behind the command, the word of that number; empty when there is none.
_xmla_bridge_input() {
  local i plain
  input=''
  for ((i = $1 + 1; i < COMP_CWORD; ++i)); do
    case ${COMP_WORDS[i]} in
      --quiet | --no-pager | --values | --openlineage-static | --datahub-tables) ;;
      -*) ((++i)) ;;
      *)
        _xmla_bridge_unquote "${COMP_WORDS[i]}"
        input=$plain
        return
        ;;
    esac
  done
}

# Adds what the name that is typed may become in that input, if it tells so at once.
_xmla_bridge_names() {
  local plain program names
  _xmla_bridge_unquote "${COMP_WORDS[0]}"
  program=$plain
  _xmla_bridge_unquote "${COMP_WORDS[COMP_CWORD]}"
  mapfile -t names < <("$program" __complete -- "$1" "$plain" 2>/dev/null)
  COMPREPLY+=("${names[@]}")
}

_xmla_bridge() {
  local commands='import export trace impact coverage check unused diff report test describe help'
  local messages='--quiet --log-format --color --no-pager --help'
  local word=${COMP_WORDS[COMP_CWORD]} before=${COMP_WORDS[COMP_CWORD - 1]} command='' input='' i
  for ((i = 1; i < COMP_CWORD; ++i)); do
    if [[ " $commands " == *" ${COMP_WORDS[i]} "* ]]; then
      command=${COMP_WORDS[i]}
      _xmla_bridge_input "$i"
      break
    fi
  done

  local words=''
  case $before in
    --format)
      case $command in
        export) words='json openlineage datahub csv sqlite dot mermaid' ;;
        trace | impact) words='text list csv markdown json dot' ;;
        check) words='text json junit sarif github azure' ;;
        coverage) words='text json' ;;
        unused) words='text json csv markdown' ;;
        diff) words='text json markdown' ;;
      esac
      ;;
    --kind)
      case $command in
        trace | impact)
          words='databaseTable databaseColumn viewTable namedQuery viewColumn computedColumn'
          words+=' condition dimension attribute measureGroup measure linkedMeasureGroup'
          words+=' linkedMeasure calculations calculatedMeasure kpi kpiValue cube cubeDimension'
          words+=' cubeAttribute cubeMeasure perspective database dataSource dataSourceView hierarchy'
          words+=' level relationship cubeHierarchy dimensionUsage partition refreshPolicy'
          words+=' aggregationDesign script everyMeasure everyPartition namedSet calculatedMember calculatedCells'
          words+=' scope assignment scriptStatement action role permission miningStructure'
          words+=' miningColumn miningModel assembly accountType calculationItem sharedExpression function'
          words+=' culture calendar report reportPage visual bookmark reportMeasure reportDataSet other'
          ;;
        unused) words='tables columns dimensions attributes measures members sets expressions functions' ;;
      esac
      ;;
    --fail-on) [ "$command" = check ] && words='error warning info never' || words='broken lost-lineage changed added removed renamed moved reordered' ;;
    --log-format) words='text json' ;;
    --color) words='auto always never' ;;
    -o | --output | --out-dir | --estate | --jobs | --since | --until) ;;
    *)
      case $command in
        '') words="$commands --help --version" ;;
        help) words=${commands% help} ;;
        import) words="-o --out-dir --estate --jobs --prune --force --no-history --map --reports --json --no-details $messages" ;;
        export)
          words='-o --out-dir --format --from --to --openlineage-static --server --post --post-timeout --post-attempts --post-resume'
          words+=" --datahub-env --datahub-instance --datahub-tables --map --reports $messages"
          ;;
        trace | impact) words="-o --format --kind --depth --values --map --reports $messages" ;;
        coverage) words="-o --format --fail-under --map --reports $messages" ;;
        check) words="-o --rules --against --format --fail-on --list-rules --print-rules --map --reports $messages" ;;
        unused) words="-o --format --kind --map --reports $messages" ;;
        diff) words="-o --since --until --format --exit-code --fail-on --map --reports $messages" ;;
        report) words="-o --map --out-dir --reports $messages" ;;
        test) words="$messages" ;;
        describe) words="--json $messages" ;;
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
    case $command$before in
      export--from | export--to | trace[!-]* | impact[!-]* | trace--values | impact--values)
        [[ -z $input || $before == [:=] ]] || _xmla_bridge_names "$input"
        ;;
    esac
  fi
}
complete -F _xmla_bridge xmla-bridge
