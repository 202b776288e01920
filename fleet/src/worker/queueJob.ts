// A job of the queue as a run needs it.
import type { JobData } from "../jobs/jobData.js";
import type { FleetJob, FleetQueue } from "../store/store.js";
import type { RunnableJob } from "./jobRun.js";

export function runnableJob(job: FleetJob, token: string, queue: FleetQueue): RunnableJob {
  const id = job.id ?? "";
  return {
    id,
    data: job.data,
    stalls: job.stalledCounter,
    extendLock: (milliseconds) => job.extendLock(token, milliseconds),
    readCancel: async () => {
      const current = await queue.getJob(id);
      const data: JobData | undefined = current?.data;
      return data?.cancel;
    },
    updateProgress: (state) => job.updateProgress(state),
    log: (line) => job.log(line),
    complete: async (result) => {
      await job.moveToCompleted(result, token, false);
    },
    fail: async (error) => {
      await job.moveToFailed(error, token, false);
    },
    giveBack: async () => {
      await job.moveToWait(token);
    },
    delay: (milliseconds) => job.moveToDelayed(Date.now() + milliseconds, token),
  };
}
