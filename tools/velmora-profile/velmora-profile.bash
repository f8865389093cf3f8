# Completion of velmora-profile for bash.

_velmora_profile_preferences='cookie.acceptCookie cache.enableCache cache.cacheDeleteTiming
keyboard.priority javascript.enableJavascript plugin.enableFlashPlugin proxy.enableProxy
proxy.hostName proxy.portHTTP proxy.portHTTPS proxy.enableHTTP11 proxy.unusedDomain
proxy.enableProxyAuth proxy.proxyUserName proxy.proxyUserPass security.enableSSL30
security.enableTLS10 security.enableTLS11 security.enableTLS12 pageInfo.home pageInfo.startup
pageInfo.lastPageURL pageInfo.Zoom cookie.cookieDeleteTiming authInfo.authInfoDeleteTiming
font.fontName'

# What the help says: _velmora_profile_help <tool> [<group> [<action>]] names the groups, the actions
# of one, or the options of an action.
_velmora_profile_help() {
    "$1" --help 2>/dev/null | awk -v group="${2-}" -v action="${3-}" '
        !/^  [a-z]/ { next }
        group == "" { print $1; next }
        $1 != group { next }
        action == "" { if ($2 != "DIR") print $2; next }
        $2 == action || $2 == "DIR" {
            for (i = 3; i <= NF; ++i) {
                if ($i == "-o") print "-o --output"
                else if (sub(/^\[--/, "--", $i)) { sub(/\]/, "", $i); print $i }
            }
        }'
}

_velmora_profile() {
    local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]}
    local group=${COMP_WORDS[1]-} action=${COMP_WORDS[2]-} words=
    COMPREPLY=()
    if [ "$COMP_CWORD" -eq 1 ]; then
        words="$(_velmora_profile_help "$1") --help --version"
    elif [ "$previous" = --format ]; then
        [ "$group" = history ] && words='csv json' || words='netscape xbel'
    elif [[ $current == -* ]]; then
        words="$(_velmora_profile_help "$1" "$group" "${action:-DIR}") --log-level"
    elif [ "$COMP_CWORD" -eq 2 ]; then
        words=$(_velmora_profile_help "$1" "$group")
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
