# The virtual tables of the class given with -v class=NAME, as "slot SYMBOL -> RESULT" lines, from
# members.awk's output (which knows signatures, results and pure functions) and the compiler's dump of class
# layouts (which knows the order).

BEGIN { own = class; sub(/.*::/, "", own) }
FNR == NR {
    if ($1 == "virtual") {
        if (!(($3) in symbol)) symbol[$3] = $4 # the nearest class comes first
        result[$4] = $0
        sub(/^[^ ]+ [^ ]+ [^ ]+ [^ ]+ /, "", result[$4])
    }
    next
}
$0 == "Vtable for " class { inside = 1; next }
inside && /^$/ { exit }
inside && $1 ~ /^[0-9]+$/ {
    entry = $0
    sub(/^[0-9]+ +/, "", entry)
    typed = sub(/^\(int \(\*\)\(\.\.\.\)\)/, "", entry)
    if (typed && entry ~ /^-?[0-9]+$/) { # offset to the top: a table begins
        if (entry != 0) print "table +" (-entry)
        number = 0
        primary = entry == 0
        next
    }
    if (entry ~ /_ZTI/) next
    line = entry
    if (entry == "0") line = "~" own "()" # destructors of an abstract class have no code
    else if (entry ~ /::_ZT[hv]/) sub(/.*::_ZT/, "_ZT", line)
    else if (entry ~ /::~/) line = line "()"
    else if (primary && number in symbol) line = symbol[number]
    else if (entry ~ /pure_virtual/) line = "(pure)"
    target = line
    sub(/^_ZThn[0-9]+_/, "_Z", target) # a thunk returns what its function does
    print "slot " line (result[target] == "" ? "" : " -> " result[target])
    number++
}
