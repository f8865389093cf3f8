# Completion of velmora-profile for bash.

_velmora_profile_preferences='cookie.acceptCookie cache.enableCache cache.cacheDeleteTiming
keyboard.priority javascript.enableJavascript plugin.enableFlashPlugin proxy.enableProxy
proxy.hostName proxy.portHTTP proxy.portHTTPS proxy.enableHTTP11 proxy.unusedDomain
proxy.enableProxyAuth proxy.proxyUserName proxy.proxyUserPass security.enableSSL30
security.enableTLS10 security.enableTLS11 security.enableTLS12 pageInfo.home pageInfo.startup
pageInfo.lastPageURL pageInfo.Zoom cookie.cookieDeleteTiming authInfo.authInfoDeleteTiming
font.fontName'

_velmora_profile_actions() {
    case $1 in
    prefs) echo list get set ;;
    bookmarks) echo list add remove import export ;;
    history) echo list find add remove clear export ;;
    fonts) echo list add sync ;;
    auth) echo list add remove ;;
    cookies) echo list to-xml to-ini import export ;;
    thumbnails) echo list pack unpack clean ;;
    esac
}

_velmora_profile_options() {
    case "$1 $2" in
    show\ * | check\ *) echo --json ;;
    repair\ *) echo --dry-run --json ;;
    diff\ *) echo --json --show-secrets ;;
    report\ *) echo -o --output ;;
    'prefs list' | 'prefs get' | 'auth list' | 'cookies list')
        echo --json --show-secrets ;;
    'bookmarks add') echo --front --strict ;;
    'bookmarks import' | 'cookies import') echo --strict --dry-run --json ;;
    'bookmarks export') echo --format --strict ;;
    'history add') echo --time --strict ;;
    'history export') echo --format ;;
    'history find' | *\ list) echo --json ;;
    'fonts sync' | 'thumbnails unpack' | 'thumbnails clean') echo --dry-run ;;
    'prefs set' | 'history remove' | cookies\ to-* | 'cookies export') echo --strict ;;
    esac
    echo --log-level
}

_velmora_profile() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local group=${COMP_WORDS[1]-} action=${COMP_WORDS[2]-} words=
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        words='show check repair diff report prefs bookmarks history fonts auth cookies thumbnails
--help --version'
    elif [ "$previous" = --format ]; then
        [ "$group" = history ] && words='csv json' || words='netscape xbel'
    elif [[ $current == -* ]]; then
        words=$(_velmora_profile_options "$group" "$action")
    elif [ "$COMP_CWORD" -eq 2 ]; then
        words=$(_velmora_profile_actions "$group")
    elif [ "$group" = prefs ] && [ "$COMP_CWORD" -eq 4 ]; then
        words=$_velmora_profile_preferences
    fi
    if [ -n "$words" ]; then
        mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
        return
    fi
    compopt -o filenames
    mapfile -t COMPREPLY < <(compgen -f -- "$current")
}

complete -F _velmora_profile velmora-profile
