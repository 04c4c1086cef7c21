# From the debug information of a unit (readelf --debug-dump=info): "base NAME" and "field TYPE NAME" of the
# class given with -v class=NAME, and "virtual DEPTH SLOT SYMBOL RESULT" for it (depth 0) and its primary
# bases.

/^ <[0-9a-f]+><[0-9a-f]+>: Abbrev Number: 0/ { next }
/^ <[0-9a-f]+><[0-9a-f]+>: Abbrev Number/ {
    split($1, part, /[<>]+/)
    level = part[2] + 0
    id = part[3]
    tag[id] = $0; sub(/.*\(DW_TAG_/, "", tag[id]); sub(/\).*/, "", tag[id])
    parent[id] = level > 0 ? open[level - 1] : ""
    open[level] = id
    siblings[parent[id]] = siblings[parent[id]] " " id
    next
}
/DW_AT_name +:/ { name[id] = text() }
/DW_AT_linkage_name *:/ { symbol[id] = text() }
/DW_AT_type +:/ { type[id] = $NF; gsub(/[<>]|0x/, "", type[id]) }
/DW_AT_data_member_location:/ { place[id] = $NF }
/DW_AT_vtable_elem_location:/ { slot[id] = $0; sub(/.*: /, "", slot[id]); sub(/\).*/, "", slot[id]) }
/DW_AT_declaration +:/ { declared[id] = 1 }
/DW_AT_byte_size +:/ { sized[id] = 1 }

END {
    for (id in tag)
        if (sized[id] && (tag[id] == "class_type" || tag[id] == "structure_type") && qualified(id) == class)
            break
    if (!(id in tag) || qualified(id) != class) exit 1
    describe(id, 0)
}

function text(  t) {
    t = $0
    if (t ~ /\(indirect/) sub(/.*\(indirect[^)]*\): /, "", t); else sub(/^[^:]*: /, "", t)
    return t
}
function qualified(id,  up) {
    up = parent[id]
    if (up != "" && tag[up] ~ /namespace|class_type|structure_type/) return qualified(up) "::" name[id]
    return name[id]
}
function spelled(id) {
    if (id == "") return "void"
    if (tag[id] == "pointer_type") return spelled(type[id]) "*"
    if (tag[id] == "reference_type") return spelled(type[id]) "&"
    if (tag[id] == "const_type") return "const " spelled(type[id])
    if (tag[id] == "typedef") return spelled(type[id])
    return qualified(id)
}
function describe(id, up,  members, count, i, m, primary) {
    count = split(siblings[id], members, " ")
    for (i = 1; i <= count; i++) {
        m = members[i]
        if (tag[m] == "inheritance") {
            if (up == 0) print "base " spelled(type[m])
            if (place[m] == 0 && primary == "") primary = type[m]
        } else if (tag[m] == "member" && up == 0 && m in place && name[m] !~ /^_vptr/) {
            print "field " spelled(type[m]) " " name[m]
        } else if (tag[m] == "subprogram" && m in slot) {
            print "virtual " up " " slot[m] " " symbol[m] " " (name[m] ~ /^~/ ? "" : spelled(type[m]))
        }
    }
    if (primary != "") describe(primary, up + 1)
}
