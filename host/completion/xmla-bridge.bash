# Completion of xmla-bridge for bash.
_xmla_bridge() {
  local commands='import export trace impact coverage check unused diff report test describe help'
  local messages='--quiet --log-format --color --no-pager --help'
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
          words+=' aggregationDesign script everyMeasure namedSet calculatedMember calculatedCells'
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
        report) words="-o --map --reports $messages" ;;
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
  fi
}
complete -F _xmla_bridge xmla-bridge
