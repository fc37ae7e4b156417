# Completes the words of tarnby-cleaner-cli in bash(1). Source this file, or put it under the program's name into a
# folder that bash looks in, such as ~/.local/share/bash-completion/completions.

_tarnby_cleaner_cli_words() {
  local word
  while IFS= read -r word; do
    [[ $word == "$1"* ]] && COMPREPLY+=("$(printf '%q' "$word")")
  done
}

_tarnby_cleaner_cli_folders() {
  compopt -o filenames 2>/dev/null # outside a completion there is nothing to tell this to
  local folder
  while IFS= read -r folder; do
    COMPREPLY+=("$folder")
  done < <(compgen -d -- "$1")
}

_tarnby_cleaner_cli_commands() {
  printf '%s\n' scan clean junk cleanup large apps app uninstall unused languages grant settings
}

_tarnby_cleaner_cli_options() {
  printf '%s\n' --home --applications --disk --set --languages --layout --at-least --json --quiet --dry-run --yes --all --help --version
}

_tarnby_cleaner_cli_groups() {
  printf '%s\n' caches logs remainders browsers mails installs trash
}

_tarnby_cleaner_cli_categories() {
  printf '%s\n' Caches Logs Remainders Browsers Mails Trash
}

_tarnby_cleaner_cli_grants() {
  printf '%s\n' home Applications macOS
}

# Those that a value can be typed for.
_tarnby_cleaner_cli_settings() {
  printf '%s\n' Caches Logs Remainders Browsers Mails Downloads Trash LargeFiles GoogleChrome Mozilla Safari \
    PrivacyAccess PrivacyFullDisk appLaunchCount UOLaunchCount 'Uninstaller Orvane' UOAppearence RateOnStore \
    TotallyCleaned Scheduler EnableScheduler SkipWarning CleanupReady include_user_apps includeDefaultApps \
    includeUtilities AllowAny helper_url application_support_url
}

_tarnby_cleaner_cli() {
  local current=${COMP_WORDS[COMP_CWORD]} command='' before='' option='' at word
  local arguments=0
  COMPREPLY=()
  # Bash takes "--home=DIR" for three words.
  for ((at = 1; at < COMP_CWORD; at++)); do
    word=${COMP_WORDS[at]}
    case $before in
      --home | --applications | --disk | --set | --languages | --layout | --at-least)
        [[ $word == '=' ]] && continue
        before=''
        continue
        ;;
    esac
    before=$word
    case $word in
      -*) ;;
      *) if [[ -z $command ]]; then command=$word; else arguments=$((arguments + 1)); fi ;;
    esac
  done
  option=$before
  [[ $current == '=' ]] && current=''

  case $option in
    --home | --applications | --disk) _tarnby_cleaner_cli_folders "$current" && return ;;
    --languages | --at-least) return ;;
    --set)
      compopt -o nospace 2>/dev/null
      _tarnby_cleaner_cli_words "$current" < <(_tarnby_cleaner_cli_settings | sed 's/$/=/')
      return
      ;;
  esac
  if [[ $current == -* ]]; then
    _tarnby_cleaner_cli_words "$current" < <(_tarnby_cleaner_cli_options)
    return
  fi
  case $command:$arguments in
    :*) _tarnby_cleaner_cli_words "$current" < <(_tarnby_cleaner_cli_commands) ;;
    clean:*) _tarnby_cleaner_cli_words "$current" < <(_tarnby_cleaner_cli_groups) ;;
    cleanup:*) _tarnby_cleaner_cli_words "$current" < <(_tarnby_cleaner_cli_categories) ;;
    grant:0) _tarnby_cleaner_cli_words "$current" < <(_tarnby_cleaner_cli_grants) ;;
    grant:1 | app:0 | uninstall:0) _tarnby_cleaner_cli_folders "$current" ;;
    settings:0) _tarnby_cleaner_cli_words "$current" < <(_tarnby_cleaner_cli_settings; printf '%s\n' home Applications macOS) ;;
    settings:1) _tarnby_cleaner_cli_words "$current" < <(printf '%s\n' true false) ;;
  esac
}

complete -F _tarnby_cleaner_cli tarnby-cleaner-cli
