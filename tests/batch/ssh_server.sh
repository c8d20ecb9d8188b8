# shellcheck shell=bash
# SPDX-License-Identifier: MIT
# An ssh server of the test's own, on the loopback, as the current user: "another machine" with a home folder of its
# own, $host_home, and a search path of its own, on which there is what the test puts into $host_bin.
# shellcheck disable=SC2154,SC2119,SC2120  # run_test sets the variables; arguments may be left out

# start_ssh_server: skips the test when there can be none.
start_ssh_server() {
  command -v ssh ssh-keygen rsync >/dev/null || skip "there is no ssh or no rsync"
  local reason packages=$build/ssh-server
  # GNU parallel, rsync and the loader split names at blanks, and sockets need short ones.
  short_folder=$(mktemp -d /tmp/vb-XXXXXX)
  trap stop_ssh_server EXIT
  made_run_folder=no
  ln -s -- "$packages/root" "$short_folder/packages"
  server_folder=$short_folder/server
  reason=$("$here/fetch_ssh_server" "$packages" 2>&1) || skip "no ssh server: $reason"
  host_home=$short_folder/host
  host_bin=$short_folder/bin
  mkdir -p -- "$server_folder" "$host_home" "$host_bin"
  ln -s -- "$(command -v rsync)" "$host_bin/rsync"
  # What a machine has, but for a velmarcon that is installed here.
  mkdir -- "$short_folder/tools"
  find /bin/ /usr/bin/ -mindepth 1 -maxdepth 1 ! -name 'velmarcon*' -exec ln -sf -t "$short_folder/tools" -- {} +
  ssh-keygen -q -t ed25519 -N '' -f "$server_folder/host_key"
  ssh-keygen -q -t ed25519 -N '' -f "$server_folder/key"
  write_server_files
  start_on_a_free_port
  export PARALLEL_SSH="ssh -F $server_folder/client_config"
}

write_server_files() {
  cat >"$server_folder/config" <<END
ListenAddress 127.0.0.1
HostKey $server_folder/host_key
AuthorizedKeysFile $server_folder/key.pub
PidFile none
UsePAM no
StrictModes no
PermitRootLogin yes
PasswordAuthentication no
MaxStartups 100
SetEnv PATH=$host_bin:$short_folder/tools
END
  printf 'photographer:x:%d:%d::%s:/bin/bash\nsshd:x:65534:65534::/run/sshd:/usr/sbin/nologin\n' \
    "$(id -u)" "$(id -g)" "$host_home" >"$server_folder/passwd"
  printf 'photographers:x:%d:\nnogroup:x:65534:\n' "$(id -g)" >"$server_folder/group"
}

# start_on_a_free_port: a taken one ends the server at once.
start_on_a_free_port() {
  local tries port libraries wrapper
  wrapper=$(find "$short_folder/packages/" -name libnss_wrapper.so)
  libraries=$(dirname -- "$(find "$short_folder/packages/" -name 'libwrap.so.0')")
  # As root the server shuts its helper process into this folder; a folder that was made is removed again.
  if [[ $(id -u) -eq 0 && ! -d /run/sshd ]]; then
    mkdir -m 755 /run/sshd 2>/dev/null || skip "no ssh server: /run/sshd cannot be made"
    made_run_folder=yes
  fi
  for ((tries = 0; tries < 20; tries++)); do
    port=$((20000 + RANDOM % 20000))
    env -i PATH=/usr/bin:/bin LD_LIBRARY_PATH="$libraries" LD_PRELOAD="$wrapper" \
      NSS_WRAPPER_PASSWD="$server_folder/passwd" NSS_WRAPPER_GROUP="$server_folder/group" \
      "$short_folder/packages/usr/sbin/sshd" -D -e -f "$server_folder/config" -p "$port" 2>"$server_folder/log" &
    server=$!
    write_client_config "$port"
    wait_for answers_or_ended
    ! kill -0 "$server" 2>/dev/null || return 0
  done
  skip "no ssh server: $(tail -n 1 "$server_folder/log")"
}

# write_client_config PORT: one connection serves all, which saves most of the time.
write_client_config() {
  cat >"$server_folder/client_config" <<END
Host other
  HostName 127.0.0.1
  Port $1
  User photographer
  IdentityFile $server_folder/key
  IdentitiesOnly yes
  StrictHostKeyChecking no
  UserKnownHostsFile $server_folder/known_hosts
  LogLevel ERROR
  ConnectTimeout 20
  ControlMaster auto
  ControlPath $short_folder/%C
  ControlPersist 60
Host nowhere
  HostName 127.0.0.1
  Port 1
  LogLevel ERROR
END
}

answers_or_ended() {
  ! kill -0 "$server" || ssh -F "$server_folder/client_config" other true
}

stop_ssh_server() {
  ssh -F "$server_folder/client_config" -O exit other 2>/dev/null || true
  [[ -z ${server-} ]] || kill "$server" 2>/dev/null || true
  [[ $made_run_folder == no ]] || rmdir /run/sshd 2>/dev/null || true
  rm -rf -- "$scratch" "$short_folder"
}

# put_program_on_host [VERSION]: velmarcon-batch, as far as it matters here. It notes the folder of each job in
# $scratch/done-on-host. As long as there is a file $scratch/hold, it does two of them.
put_program_on_host() {
  cat >"$host_bin/velmarcon-batch" <<END
#!/bin/bash
[[ \$1 != --version ]] || { echo "velmarcon-batch ${1-$("$batch_program" --version | sed 's/.* //')}"; exit; }
printf '%s\n' "\$PWD" >>"$scratch/done-on-host"
while [[ -e "$scratch/hold" && \$(wc -l <"$scratch/done-on-host") -gt 2 ]]; do
  sleep 0.05
done
exec "$batch_program" "\$@"
END
  chmod +x "$host_bin/velmarcon-batch"
}
