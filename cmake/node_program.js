// Programs that run under node see its environment.
Module.preRun = () => Object.assign(ENV, process.env);
