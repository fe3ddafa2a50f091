#!/usr/bin/env bash
# check_slurm.sh PROGRAM ROOT: runs the job array of docs/scale.md on a Slurm of its own, a controller and a node on this
# machine. The node dies in the middle and comes back: what it was at is done again, and nothing is in the estate
# twice. Ends with 77 where there is no Slurm.
set -euo pipefail
program=$(realpath "$1")
root=$(realpath "$2")
PATH=$PATH:/usr/sbin
for command in slurmctld slurmd sbatch pkill; do
  command -v "$command" >/dev/null || {
    echo "Slurm is not installed ($command): skipped"
    exit 77
  }
done
export LC_ALL=C SOURCE_DATE_EPOCH=0
work=$(mktemp -d)
cd "$work"
mkdir bin state spool

# All that the node has started, itself included, dies at once, as when a machine loses its power.
kill_node() {
  [ ! -e node.pid ] || pkill -KILL -F node.pid || true
  pkill -KILL -f "^slurmstepd: \[[0-9]" || true
  pkill -KILL -f "$work/spool" || true
  pkill -KILL -f "^sleep 86399$" || true
}
end() {
  kill_node
  [ ! -e controller.pid ] || pkill -KILL -F controller.pid || true
  rm -rf "$work"
}
trap end EXIT

host=$(hostname -s)
# Far from the ports of a Slurm that may be there, and from those of another run of this test.
port=$((20000 + $$ % 10000 * 2))
cat >slurm.conf <<END
ClusterName=test
SlurmctldHost=$host(127.0.0.1)
AuthType=auth/none
AuthInfo=cred_expire=5
BatchStartTimeout=1
CredType=cred/none
SlurmUser=$(id -un)
SlurmdUser=$(id -un)
SlurmctldPort=$port
SlurmdPort=$((port + 1))
StateSaveLocation=$work/state
SlurmdSpoolDir=$work/spool
SlurmctldPidFile=$work/controller.pid
SlurmdPidFile=$work/node.pid
SlurmctldLogFile=$work/controller.log
SlurmdLogFile=$work/node.log
ProctrackType=proctrack/linuxproc
TaskPlugin=task/none
SwitchType=switch/none
MpiDefault=none
ReturnToService=2
JobRequeue=1
SlurmdTimeout=5
SchedulerParameters=sched_interval=1,batch_sched_delay=0
SelectType=select/cons_tres
SelectTypeParameters=CR_CPU
NodeName=$host NodeAddr=127.0.0.1 CPUs=2 RealMemory=64000 State=UNKNOWN
PartitionName=test Nodes=ALL Default=YES State=UP
END
sed -i "s/RealMemory=64000/RealMemory=$(awk '/MemTotal/ { print int($2 / 1024 * 0.9) }' /proc/meminfo)/" slurm.conf
export SLURM_CONF=$work/slurm.conf
wait_for() {
  for _ in $(seq 300); do
    if "$@" >/dev/null 2>&1; then return; fi
    sleep 0.2
  done
  echo "in vain: $*"
  tail -n 20 ./*.log
  return 1
}
node_is_idle() { sinfo -h -o %t | grep -qx idle; }
slurmctld -c
slurmd
if ! wait_for node_is_idle; then
  echo 'Slurm does not start on this machine: skipped'
  exit 77
fi

mkdir definitions
for name in a b c d; do sed "s/Lost Property/Property $name/g" "$root/examples/lost-property-create.xmla" >definitions/$name.xmla; done
find definitions -name '*.xmla' | sort >files.txt
# The program, but for the one import during which the node dies.
cat >bin/xmla-bridge <<END
#!/bin/sh
case "\$*" in *definitions/c.xmla*) if mkdir "$work/reached" 2>/dev/null; then sleep 86399; fi ;; esac
exec "$program" "\$@"
END
chmod +x bin/xmla-bridge
export PATH=$work/bin:$PATH

# The block of the document that writes the task.
awk -v RS='\n```' 'sub(/^sh\n/, "") && /#SBATCH/' "$root/docs/scale.md" >write-task.sh
sh write-task.sh
# Each task imports into the estate too.
sed -i 's/ --mem=4G//; s/^exec \(xmla-bridge import "$file" --quiet\)\(.*\)/\1\2 \&\& exec \1 --estate array.db/' import-task.sh
sbatch --requeue --array="1-$(wc -l <files.txt)%100" import-task.sh
wait_for test -d reached
kill_node
sleep 1
slurmd
no_job_is_left() { [ -z "$(squeue -h)" ]; }
wait_for no_job_is_left

models=$(ls array-models | wc -l)
in_estate=$(sqlite3 array.db 'SELECT count(*) FROM models')
versions=$(sqlite3 array.db 'SELECT count(*) FROM versions')
echo "$models models, $in_estate in the estate, $versions versions"
[ "$models $in_estate $versions" = '4 4 4' ]
