#!/usr/bin/env bash
# musl_compiler.sh COMPILER LANGUAGE TARGET LINKER LIBC ARGUMENT...: compiles cc or c++ for a target with musl. To link, the
# compiler says how, and Debian's cross linker does likewise: LINKER knows -Bsymbolic-functions, and on mipsel it leaves no
# addresses in what is read only. LIBC is Debian's libc.so: the compiler's own lacks 64-bit times on 32 bits.
set -uo pipefail
compiler=("$1" "$2" -target "$3" -dynamic)
linker=$4
libc=$5
shift 5
for argument; do
  [[ $argument != -[cE] ]] || exec "${compiler[@]}" "$@"
done

said=$(ZIG_VERBOSE_LINK=1 "${compiler[@]}" -fno-lto -Wl,-z,notext "$libc" "${@/#-Wl,-Bsymbolic-functions/-Wl,--as-needed}" 2>&1)
status=$?
link=$(sed --quiet '/^ld.lld -r /d; s/^ld.lld //p' <<<"$said" | tail --lines=1)
if ((status != 0)) || [[ -z $link ]]; then
  echo "$said"
  exit $status
fi

# What only the compiler's linker knows goes. It also gives each library a handle of its own, __dso_handle.
link=$(sed 's/--error-limit=[0-9]*//; s/ -O3//; s/-z notext/-z text/; s,[^ ]*/libc\.so,-l:libc.so,g' <<<"$link")
[[ " $* " != *" -Wl,-Bsymbolic-functions "* ]] || link+=" -Bsymbolic-functions"
read -ra arguments <<<"$link"
exec "$linker" --defsym=__dso_handle=_DYNAMIC -L"${libc%/*}" --start-group "${arguments[@]}" --end-group
